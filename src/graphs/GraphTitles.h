// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/GraphLook.h"

#include <string>
#include <utility>

/// What the numbers along an axis are, as far as their unit tells: those of a column of the data set, or of
/// one column over another.
struct AxisMeasure {
    static constexpr int kNone = -1; ///< a number without a unit that the user could name
    static constexpr int kTime = 0;
    int column = kNone;
    int per = kNone;
};

/// The words around a graph, whatever it shows, and what the user has changed of its look.
class GraphTitles
{
public:
    const std::string& Title() const { return m_title; }
    void Title(std::string text) { m_title = m_userTitle = std::move(text); }
    const std::string& XTitle() const { return m_xTitle; }
    void XTitle(std::string text) { m_xTitle = std::move(text); }
    const std::string& YTitle() const { return m_yTitle; }
    void YTitle(std::string text) { m_yTitle = std::move(text); }
    const AxisMeasure& XMeasure() const { return m_xMeasure; }
    void XMeasure(AxisMeasure measure) { m_xMeasure = measure; }
    const AxisMeasure& YMeasure() const { return m_yMeasure; }
    void YMeasure(AxisMeasure measure) { m_yMeasure = measure; }
    /// Units of the axes, shown behind their titles in pictures only; empty for none.
    const std::string& XUnit() const { return m_xUnit; }
    void XUnit(std::string text) { m_xUnit = std::move(text); }
    const std::string& YUnit() const { return m_yUnit; }
    void YUnit(std::string text) { m_yUnit = std::move(text); }
    /// The title as the user may have edited it. Copied data keep the titles that the graph came with.
    const std::string& UserTitle() const { return m_userTitle; }
    void UserTitle(std::string text) { m_userTitle = std::move(text); }
    const GraphLook& Look() const { return m_look; }
    void Look(GraphLook look) { m_look = std::move(look); }

private:
    std::string m_title = "Title", m_userTitle = "Title", m_xTitle = "X_Title", m_yTitle = "Y_Title";
    std::string m_xUnit, m_yUnit;
    AxisMeasure m_xMeasure, m_yMeasure;
    GraphLook m_look;
};
