// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

/// The words around a graph, whatever it shows.
class GraphTitles
{
public:
    const std::string& Title() const { return m_title; }
    void Title(std::string text) { m_title = m_userTitle = std::move(text); }
    const std::string& XTitle() const { return m_xTitle; }
    void XTitle(std::string text) { m_xTitle = std::move(text); }
    const std::string& YTitle() const { return m_yTitle; }
    void YTitle(std::string text) { m_yTitle = std::move(text); }
    /// Units of the axes, shown behind their titles in pictures only; empty for none.
    const std::string& XUnit() const { return m_xUnit; }
    void XUnit(std::string text) { m_xUnit = std::move(text); }
    const std::string& YUnit() const { return m_yUnit; }
    void YUnit(std::string text) { m_yUnit = std::move(text); }
    /// The title as the user may have edited it.
    const std::string& UserTitle() const { return m_userTitle; }
    void UserTitle(std::string text) { m_userTitle = std::move(text); }

private:
    std::string m_title = "Title", m_userTitle = "Title", m_xTitle = "X_Title", m_yTitle = "Y_Title";
    std::string m_xUnit, m_yUnit;
};
