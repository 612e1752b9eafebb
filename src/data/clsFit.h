// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the data set knows of one logged fit: its name, when and how it was made, and where its body lies in
/// the project file. It does not hold the body.
class clsFit
{
public:
    static constexpr std::size_t kNameWidth = 50;

    bool Deleted() const { return m_deleted; } ///< kept for the file; nothing in the program sets it
    void StoredDeleted(bool deleted) { m_deleted = deleted; } ///< as a project file has it

    // File positions of the body: its first byte, counted from 1, and the byte behind its last.
    std::int32_t Start() const { return m_start; }
    void Start(std::int32_t position) { m_start = position; }
    std::int32_t TheEnd() const { return m_theEnd; }
    void TheEnd(std::int32_t position) { m_theEnd = position; }

    const std::string& FitName() const { return m_fitName; } ///< always 50 characters
    void FitName(std::string_view name);                     ///< filled with blanks, or cut

    // Days since 1899-12-30 in local time.
    double TheDate() const { return m_theDate; } ///< a whole day
    void TheDate(double days) { m_theDate = days; }
    double TheTime() const { return m_theTime; } ///< the fraction of the day; 0.75 is 18:00
    void TheTime(double fraction) { m_theTime = fraction; }

    std::int32_t MethType() const { return m_methType; } ///< model number
    void MethType(std::int32_t whichMeth) { m_methType = whichMeth; }
    std::int32_t FitOp() const { return m_fitOp; } ///< error model number
    void FitOp(std::int32_t fitOp) { m_fitOp = fitOp; }

    /// Takes the name and the moment (days since 1899-12-30, local time) and is not deleted. The other fields
    /// stay as they are.
    void Create(std::string_view name, double moment);

private:
    void SetDateAndTime(double moment);

    bool m_deleted = false;
    std::int32_t m_start = 0;
    std::int32_t m_theEnd = 0;
    std::string m_fitName = std::string(kNameWidth, ' ');
    double m_theDate = 0.0;
    double m_theTime = 0.0;
    std::int32_t m_methType = 0;
    std::int32_t m_fitOp = 0;
};
