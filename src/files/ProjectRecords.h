// SPDX-License-Identifier: GPL-3.0-or-later
// The project file (.vl3): plain records, and functions between them and bytes. Layout with offsets and an
// example: docs/formats.md.
//
// Readers raise a RecordError that names the byte; they never read beyond what is there, and nothing is
// allocated for a count that the rest of the file cannot hold.
#pragma once

#include "base/Array1.h"
#include "files/Bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace project_file
{
inline constexpr int kRows = 200;
inline constexpr int kColumns = 15;
inline constexpr int kVectorLength = 201;
inline constexpr int kParameters = 8;
inline constexpr int kReplicates = 1000;
inline constexpr std::int64_t kDataPosition = 120; ///< of the data record
inline constexpr std::int64_t kFitIndexBytes = 88;
inline constexpr std::size_t kDescriptionWidth = 40;
inline constexpr std::size_t kFormatWidth = 20;
inline constexpr std::size_t kTitleWidth = 30;
inline constexpr std::size_t kFitNameWidth = 50;

/// Type tags of values of open type.
enum Tag : std::int16_t { kEmpty = 0, kInt16 = 2, kInt32 = 3, kFloat = 4, kDouble = 5, kDate = 7 };

using Series = Array1<float, kRows>;

/// A number of open type with the type that it has in the file.
struct TaggedNumber {
    std::int16_t tag = kEmpty; ///< kEmpty, kInt16, kInt32, kFloat or kDouble
    double value = 0.0;        ///< 0 for an empty one
    bool operator==(const TaggedNumber&) const = default;
};
using TaggedArray = std::vector<TaggedNumber>;

struct Header {
    std::int32_t NumLoggedRuns = 0;
    std::int32_t NumScens = 0;
    std::int32_t NumPts = 0;
    std::string DSDesc;
    std::int32_t MinTimeP = 0;
    std::int32_t MaxTimeP = 0;
};

struct ColumnRecord {
    std::string ColFormat;
    Series values;
};

/// The data, of the project or of the body of a fit.
struct DataRecord {
    std::array<std::optional<ColumnRecord>, kColumns> columns; ///< those that follow in the file
    std::optional<Array1<bool, kRows>> ToggledIn;              ///< only in the body of a fit
    std::int32_t loggedFits = 0;
    std::int32_t scenarios = 0;
};

struct ScenarioRecord {
    std::string Title;
    TaggedArray Vector; ///< 201 of them
    std::int32_t VecType = 0;
};

struct FitIndexRecord {
    bool Deleted = false;
    std::int32_t MethType = 0;
    std::int32_t FitOp = 0;
    std::string FitName; ///< all 50 characters: names may differ by leading blanks
    double TheDate = 0.0;
    double TheTime = 0.0;
    std::int32_t Start = 0; ///< position of the body, and the one behind it
    std::int32_t TheEnd = 0;
};

/// A model with its fit. What no operation of the program reads is kept and written back as it stood.
struct ModelRecord {
    std::array<double, 4> FinalEsts{}; ///< the first three in the models of one searched parameter
    float InitDep = 0.0F;
    float Mort = 0.0F;
    std::int16_t LAG = 0;
    float RSqr = 0.0F;
    TaggedNumber Z; ///< as a tagged value, a float or a 16-bit number, by the class
    bool IsBSDone = false;
    double GammaBeta = 0.0;
    double GammaNu = 0.0;
    std::int32_t FitOp = 0;
    double QValue = 0.0;
    std::int32_t unnamed12 = 0;
    bool Fixed1 = false;
    bool Fixed2 = false;
    std::int16_t unnamed15 = 0;
    bool PlotEvaluations = false;
    bool SetStartingEsts = false;
    std::int32_t StartEstKind = 0;
    bool UsingNosFlag = false;
    std::int32_t StartEstKind2 = 0;
    std::int32_t NumBootStraps = 0; ///< 0 to 1000
    Series ResidVec;
    std::optional<TaggedArray> weights; ///< nothing: an array that was never sized
    Series FittedVec;
    std::optional<TaggedArray> times; ///< second regressor or time labels
    std::int32_t unnamed26 = 0;
};

/// Bootstrap estimates by parameter and replicate; an empty one was never filled.
using BootStrapRecord = std::vector<std::optional<float>>; ///< 8 times 1000, parameter by parameter

struct Body {
    ModelRecord model;
    DataRecord data;
    BootStrapRecord bootStraps;
};

/// All of a project but the bodies, whose places the index tells.
struct Project {
    Header header;
    DataRecord data;
    std::vector<ScenarioRecord> scenarios;
    std::vector<FitIndexRecord> fits;
};

Project ReadProject(std::string_view file);

/// `bodies`: one for each fit, in their order. The places in `project.fits` become those in the file written.
/// \throws VeltError 2254 with the program's base when the file would be longer than its positions can say
std::string WriteProject(Project& project, const std::vector<std::string_view>& bodies);

/// The body of a fit out of the bytes of a file. \throws RecordError when its place is not within the file
std::string_view BodyOf(const FitIndexRecord& fit, std::string_view file);

/// \param whichMeth  number of the model, 1 to 6, whose classes differ in a few widths
/// \param start  position of the body in its file, so that a failure can name the byte
/// \throws RecordError the body is damaged, or there is no such model. Bytes behind the body are not looked
/// at.
Body ReadBody(std::string_view body, std::int32_t whichMeth, std::size_t start = 1);
std::string WriteBody(const Body& body, std::int32_t whichMeth);

} // namespace project_file
