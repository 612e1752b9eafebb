// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ProjectRecords.h"

#include "base/FileType.h"
#include "base/ForeignText.h"
#include "base/Text.h"
#include "base/Windows1252.h"

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

namespace project_file
{
namespace
{
constexpr std::int64_t kHeaderPosition = 12;
constexpr char kVersion = 3;
constexpr std::size_t kUnusedBytes = 48;
constexpr std::int16_t kArray = 8204;
constexpr std::int32_t kRecruitmentIndexModel = 2;
constexpr std::int32_t kNoRecruitmentModel = 1;
constexpr std::int32_t kConstantRecruitmentModel = 3;
constexpr std::int32_t kFirstProductionModel = 4;
constexpr std::int32_t kLastModel = 6;

// Each record has one walk over its fields, which reads or writes them: the order stands once. A field is
// given by what both a reader and a writer do with it.

/// Takes the fields of a record from a file.
class Reading
{
public:
    explicit Reading(BoundedReader& in) : m_in(in) {}
    BoundedReader& In() { return m_in; }

    void Field(std::int16_t& value, const char* what) { value = m_in.I16(what); }
    void Field(std::int32_t& value, const char* what) { value = m_in.I32(what); }
    void Field(float& value, const char* what) { value = m_in.F32(what); }
    void Field(double& value, const char* what) { value = m_in.F64(what); }
    void Field(bool& value, const char* what) { value = m_in.Boolean(what); }
    void Text(std::string& text, std::size_t width, const char* what) { text = m_in.Text(width, what); }
    /// With its blanks: names may differ by those before them.
    void Name(std::string& name, std::size_t width, const char* what)
    {
        name = FromWindows1252(m_in.Bytes(width, what));
    }
    void Tagged(TaggedNumber& number, const char* what) { number = TakeNumber(m_in.I16(what), what); }

    /// A date under its own tag.
    void Date(double& days, const char* what)
    {
        if (m_in.I16(what) != kDate)
            m_in.Refuse("\"" + std::string(what) + "\" is no date");
        days = m_in.F64(what);
    }

    /// An array of one dimension; one that was never sized is empty, or has no elements.
    void Array(std::optional<TaggedArray>& array, const char* what)
    {
        array.reset();
        const std::int16_t tag = m_in.I16(what);
        if (tag == kEmpty)
            return;
        if (tag != kArray || m_in.I16(what) != 1)
            m_in.Refuse("\"" + std::string(what) + "\" is no array of one dimension");
        constexpr std::size_t kLeast = 2; // an empty element is its tag alone
        const std::int32_t announced = m_in.I32(what);
        (void)m_in.I32(what); // the lower bound; elements are counted from 1 whatever it says
        if (announced < 0 || announced > kRows || static_cast<std::size_t>(announced) > m_in.Left() / kLeast)
            m_in.Refuse("\"" + std::string(what) + "\" asks for " + std::to_string(announced) + " elements");
        if (announced == 0)
            return;
        TaggedArray taken(static_cast<std::size_t>(announced));
        for (TaggedNumber& element : taken)
            Tagged(element, what);
        array = std::move(taken);
    }

private:
    TaggedNumber TakeNumber(std::int16_t tag, const char* what)
    {
        switch (tag) {
        case kEmpty:
            return {};
        case kInt16:
            return {tag, static_cast<double>(m_in.I16(what))};
        case kInt32:
            return {tag, static_cast<double>(m_in.I32(what))};
        case kFloat:
            return {tag, static_cast<double>(m_in.F32(what))};
        case kDouble:
            return {tag, m_in.F64(what)};
        default:
            m_in.Refuse("\"" + std::string(what) + "\" has the unknown type " + std::to_string(tag));
        }
    }

    BoundedReader& m_in;
};

/// Puts the fields of a record behind one another.
class Writing
{
public:
    explicit Writing(ByteWriter& out) : m_out(out) {}

    void Field(std::int16_t value, const char*) { m_out.I16(value); }
    void Field(std::int32_t value, const char*) { m_out.I32(value); }
    void Field(float value, const char*) { m_out.F32(value); }
    void Field(double value, const char*) { m_out.F64(value); }
    void Field(bool value, const char*) { m_out.Boolean(value); }
    void Text(const std::string& text, std::size_t width, const char*) { m_out.Text(text, width); }
    void Name(const std::string& name, std::size_t width, const char*) { m_out.Text(name, width); }

    void Tagged(const TaggedNumber& number, const char*)
    {
        m_out.I16(number.tag);
        switch (number.tag) {
        case kInt16:
            return m_out.I16(static_cast<std::int16_t>(number.value));
        case kInt32:
            return m_out.I32(static_cast<std::int32_t>(number.value));
        case kFloat:
            return m_out.F32(static_cast<float>(number.value));
        case kDouble:
            return m_out.F64(number.value);
        default:
            return;
        }
    }

    void Date(double days, const char*)
    {
        m_out.I16(kDate);
        m_out.F64(days);
    }

    void Array(const std::optional<TaggedArray>& array, const char* what)
    {
        if (!array)
            return m_out.I16(kEmpty);
        m_out.I16(kArray);
        m_out.I16(1);
        m_out.I32(static_cast<std::int32_t>(array->size()));
        m_out.I32(1);
        for (const TaggedNumber& element : *array)
            Tagged(element, what);
    }

private:
    ByteWriter& m_out;
};

template <typename Direction, typename Record>
void WalkHeader(Direction& go, Record& header)
{
    go.Field(header.NumLoggedRuns, "NumLoggedRuns");
    go.Field(header.NumScens, "NumScens");
    go.Field(header.NumPts, "NumPts");
    go.Text(header.DSDesc, kDescriptionWidth, "DSDesc");
    go.Field(header.MinTimeP, "MinTimeP");
    go.Field(header.MaxTimeP, "MaxTimeP");
}

template <typename Direction, typename Values>
void WalkSeries(Direction& go, Values& series, const char* what)
{
    for (auto& value : series)
        go.Field(value, what);
}

template <typename Direction, typename Record>
void WalkFitIndex(Direction& go, Record& fit)
{
    go.Field(fit.Deleted, "Deleted");
    go.Field(fit.MethType, "MethType");
    go.Field(fit.FitOp, "FitOp");
    go.Name(fit.FitName, kFitNameWidth, "FitName");
    go.Date(fit.TheDate, "TheDate");
    go.Date(fit.TheTime, "TheTime");
    go.Field(fit.Start, "Start");
    go.Field(fit.TheEnd, "TheEnd");
}

/// Estimates are of open type in the recruitment index model alone.
template <typename Direction, typename Record>
void WalkEstimates(Direction& go, Record& model, std::int32_t whichMeth)
{
    const std::size_t count =
        whichMeth == kNoRecruitmentModel || whichMeth == kConstantRecruitmentModel ? 3 : 4;
    for (std::size_t i = 0; i < count; ++i) {
        if (whichMeth != kRecruitmentIndexModel) {
            go.Field(model.FinalEsts[i], "FinalEsts");
            continue;
        }
        TaggedNumber number{kDouble, model.FinalEsts[i]};
        go.Tagged(number, "FinalEsts");
        if constexpr (!std::is_const_v<Record>)
            model.FinalEsts[i] = number.value;
    }
}

/// Z is of open type in the no-recruitment model, where it stays empty, and a 16-bit number in the
/// recruitment index model.
template <typename Direction, typename Record>
void WalkZ(Direction& go, Record& model, std::int32_t whichMeth)
{
    if (whichMeth == kNoRecruitmentModel)
        return go.Tagged(model.Z, "Z");
    if (whichMeth == kRecruitmentIndexModel) {
        auto z = static_cast<std::int16_t>(model.Z.value);
        go.Field(z, "Z");
        if constexpr (!std::is_const_v<Record>)
            model.Z = {kInt16, static_cast<double>(z)};
        return;
    }
    auto z = static_cast<float>(model.Z.value);
    go.Field(z, "Z");
    if constexpr (!std::is_const_v<Record>)
        model.Z = {kFloat, static_cast<double>(z)};
}

template <typename Direction, typename Record>
void WalkModel(Direction& go, Record& model, std::int32_t whichMeth)
{
    WalkEstimates(go, model, whichMeth);
    go.Field(model.InitDep, "InitDep");
    go.Field(model.Mort, "Mort");
    go.Field(model.LAG, "LAG");
    go.Field(model.RSqr, "RSqr");
    WalkZ(go, model, whichMeth);
    go.Field(model.IsBSDone, "IsBSDone");
    go.Field(model.GammaBeta, "GammaBeta");
    go.Field(model.GammaNu, "GammaNu");
    go.Field(model.FitOp, "FitOp");
    TaggedNumber q{kDouble, model.QValue};
    go.Tagged(q, "QValue");
    if constexpr (!std::is_const_v<Record>)
        model.QValue = q.value;
    go.Field(model.unnamed12, "field 12 of the model");
    go.Field(model.Fixed1, "Fixed1");
    go.Field(model.Fixed2, "Fixed2");
    go.Field(model.unnamed15, "field 15 of the model");
    go.Field(model.PlotEvaluations, "PlotEvaluations");
    go.Field(model.SetStartingEsts, "SetStartingEsts");
    go.Field(model.StartEstKind, "StartEstKind");
    go.Field(model.UsingNosFlag, "UsingNosFlag");
    go.Field(model.StartEstKind2, "StartEstKind2");
    go.Field(model.NumBootStraps, "NumBootStraps");
    WalkSeries(go, model.ResidVec, "ResidVec");
    go.Array(model.weights, whichMeth >= kFirstProductionModel ? "WeightVec" : "InitWeight");
    WalkSeries(go, model.FittedVec, "FittedVec");
    go.Array(model.times, whichMeth >= kFirstProductionModel ? "TimeIdx" : "InitX2");
    go.Field(model.unnamed26, "field 26 of the model");
}

/// \param ofFit  with the toggles, as the body of a fit has them
DataRecord ReadData(BoundedReader& in, bool ofFit)
{
    Reading go(in);
    DataRecord data;
    for (auto& column : data.columns) {
        if (!in.Boolean("presence of a column"))
            continue;
        column.emplace();
        go.Text(column->ColFormat, kFormatWidth, "ColFormat");
        WalkSeries(go, column->values, "values of a column");
    }
    if (ofFit) {
        data.ToggledIn.emplace();
        WalkSeries(go, *data.ToggledIn, "ToggledIn");
    }
    go.Field(data.loggedFits, "number of logged fits");
    go.Field(data.scenarios, "number of scenarios");
    return data;
}

void WriteData(ByteWriter& out, const DataRecord& data)
{
    Writing go(out);
    for (const auto& column : data.columns) {
        out.Boolean(column.has_value());
        if (!column)
            continue;
        go.Text(column->ColFormat, kFormatWidth, "");
        WalkSeries(go, column->values, "");
    }
    if (data.ToggledIn)
        WalkSeries(go, *data.ToggledIn, "");
    go.Field(data.loggedFits, "");
    go.Field(data.scenarios, "");
}

ScenarioRecord ReadScenario(BoundedReader& in)
{
    Reading go(in);
    ScenarioRecord scenario;
    go.Text(scenario.Title, kTitleWidth, "Title");
    scenario.Vector.resize(kVectorLength);
    for (TaggedNumber& value : scenario.Vector)
        go.Tagged(value, "Vector");
    go.Field(scenario.VecType, "VecType");
    return scenario;
}

void WriteScenario(ByteWriter& out, const ScenarioRecord& scenario)
{
    Writing go(out);
    go.Text(scenario.Title, kTitleWidth, "");
    for (const TaggedNumber& value : scenario.Vector)
        go.Tagged(value, "");
    go.Field(scenario.VecType, "");
}

/// A count of records of the data record, against what is left of the file.
void CheckCount(const BoundedReader& in, std::int32_t count, std::size_t leastBytes, const char* what)
{
    if (count < 0 || static_cast<std::size_t>(count) > in.Left() / leastBytes)
        in.Refuse("\"" + std::string(what) + "\" is " + std::to_string(count));
}

void WriteHeader(ByteWriter& out, const Header& header)
{
    for (const std::uint8_t byte : kProjectMagic)
        out.Bytes(std::string(1, static_cast<char>(byte)));
    out.Bytes(std::string(1, kVersion));
    Writing go(out);
    WalkHeader(go, header);
    out.Bytes(std::string(kUnusedBytes, '\0'));
}
} // namespace

Project ReadProject(std::string_view file)
{
    constexpr std::size_t kLeastScenario = kTitleWidth + static_cast<std::size_t>(2 * kVectorLength) + 4;
    BoundedReader in(file);
    Reading go(in);
    Project project;
    in.Seek(kHeaderPosition, "header");
    WalkHeader(go, project.header);
    in.Seek(kDataPosition, "data record");
    project.data = ReadData(in, false);
    CheckCount(in, project.data.scenarios, kLeastScenario, "number of scenarios");
    for (std::int32_t i = 0; i < project.data.scenarios; ++i)
        project.scenarios.push_back(ReadScenario(in));
    CheckCount(in, project.data.loggedFits, static_cast<std::size_t>(kFitIndexBytes),
               "number of logged fits");
    for (std::int32_t i = 0; i < project.data.loggedFits; ++i)
        WalkFitIndex(go, project.fits.emplace_back());
    return project;
}

std::string WriteProject(Project& project, const std::vector<std::string_view>& bodies)
{
    ByteWriter out;
    WriteHeader(out, project.header);
    WriteData(out, project.data);
    for (const ScenarioRecord& scenario : project.scenarios)
        WriteScenario(out, scenario);
    std::uint64_t place = out.Position() + static_cast<std::uint64_t>(kFitIndexBytes) * project.fits.size();
    for (std::size_t i = 0; i < project.fits.size(); ++i) {
        FitIndexRecord& fit = project.fits[i];
        fit.Start = static_cast<std::int32_t>(place);
        place += bodies.at(i).size();
        if (place > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max()))
            throw ProgramError(errors::kWriteObj,
                               "WriteObj Failure.\nThe project is larger than its format allows (2 GB).",
                               "WriteObj");
        fit.TheEnd = static_cast<std::int32_t>(place);
        Writing go(out);
        WalkFitIndex(go, std::as_const(fit));
    }
    for (const std::string_view body : bodies)
        out.Bytes(body);
    return out.Take();
}

std::string_view BodyOf(const FitIndexRecord& fit, std::string_view file)
{
    const bool within = fit.Start >= 1 && fit.TheEnd >= fit.Start &&
                        static_cast<std::uint64_t>(fit.TheEnd) <= file.size() + 1;
    if (!within)
        throw RecordError(static_cast<std::size_t>(fit.Start < 1 ? 1 : fit.Start),
                          "the place of the fit \"" + Quotable(Trim(fit.FitName)) +
                              "\" is not within the file");
    return file.substr(static_cast<std::size_t>(fit.Start) - 1,
                       static_cast<std::size_t>(fit.TheEnd - fit.Start));
}

Body ReadBody(std::string_view body, std::int32_t whichMeth, std::size_t start)
{
    BoundedReader in(body, start);
    if (whichMeth < kNoRecruitmentModel || whichMeth > kLastModel)
        in.Refuse("the fit is of the unknown model " + std::to_string(whichMeth));
    Reading go(in);
    Body read;
    WalkModel(go, read.model, whichMeth);
    if (read.model.NumBootStraps < 0 || read.model.NumBootStraps > kReplicates)
        in.Refuse("\"NumBootStraps\" is " + std::to_string(read.model.NumBootStraps));
    read.data = ReadData(in, true);
    read.bootStraps.resize(static_cast<std::size_t>(kParameters) * kReplicates);
    for (auto& estimate : read.bootStraps) {
        TaggedNumber number;
        go.Tagged(number, "BS");
        if (std::fabs(number.value) > static_cast<double>(std::numeric_limits<float>::max()) &&
            std::isfinite(number.value))
            in.Refuse("an estimate of a replicate is too large");
        if (number.tag != kEmpty)
            estimate = static_cast<float>(number.value);
    }
    return read;
}

std::string WriteBody(const Body& body, std::int32_t whichMeth)
{
    ByteWriter out;
    Writing go(out);
    WalkModel(go, body.model, whichMeth);
    WriteData(out, body.data);
    for (const auto& estimate : body.bootStraps)
        go.Tagged(estimate ? TaggedNumber{kFloat, static_cast<double>(*estimate)} : TaggedNumber{}, "BS");
    return out.Take();
}

} // namespace project_file
