// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "base/VeltError.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// A printer whose characters are all one unit wide. It keeps what was printed, and fails when it is told to.
class PaperPrinter : public IPrinter
{
public:
    using Page = std::vector<std::string>;

    // What the test sets:
    double width = 80.0;   ///< of a line
    std::size_t depth = 0; ///< lines on a page; 0: no end
    bool cancelled = false;
    bool absent = false; ///< there is no printer
    int failsAt = 0;     ///< the printer jams at this line, counted from 1 over all pages

    // What came of it:
    std::vector<std::string> titles;    ///< of the documents that were opened
    std::vector<Page> pages;            ///< the lines of each page; "> " before one that begins further right
    std::vector<double> positions;      ///< where those begin
    std::vector<std::string> boldLines; ///< the ones printed bold
    bool ended = false;
    bool dropped = false;

    std::unique_ptr<IPrintout> Open(const std::string& title) override
    {
        titles.push_back(title);
        if (absent)
            throw PrinterFault("There is no printer.");
        if (cancelled)
            return nullptr;
        pages.emplace_back();
        return std::make_unique<Printout>(*this);
    }

    /// The lines of all pages.
    Page Lines() const
    {
        Page lines;
        for (const Page& page : pages)
            lines.insert(lines.end(), page.begin(), page.end());
        return lines;
    }

private:
    class Printout : public IPrintout
    {
    public:
        explicit Printout(PaperPrinter& printer) : m_printer(printer) {}
        ~Printout() override { m_printer.dropped = !m_printer.ended; }
        Printout(const Printout&) = delete;
        Printout& operator=(const Printout&) = delete;

        double TextWidth(const std::string& line) const override
        {
            return static_cast<double>(
                std::count_if(line.begin(), line.end(), [](char byte) { return (byte & '\xC0') != '\x80'; }));
        }
        double PrintableWidth() const override { return m_printer.width; }
        void CurrentX(double x) override { m_x = x; }
        void Bold(bool on) override { m_bold = on; }
        void Print(const std::string& line) override
        {
            if (++m_lines == m_printer.failsAt)
                throw PrinterFault("The printer is jammed.");
            if (m_printer.depth > 0 && m_printer.pages.back().size() == m_printer.depth)
                m_printer.pages.emplace_back();
            if (m_x > 0.0)
                m_printer.positions.push_back(m_x);
            m_printer.pages.back().push_back(m_x > 0.0 ? "> " + line : line);
            if (m_bold)
                m_printer.boldLines.push_back(line);
            m_x = 0.0;
        }
        void NewPage() override { m_printer.pages.emplace_back(); }
        void End() override { m_printer.ended = true; }

    private:
        PaperPrinter& m_printer;
        double m_x = 0.0;
        bool m_bold = false;
        int m_lines = 0;
    };
};
