// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ColumnUnits.h"

#include "shell/DesktopSettings.h"

#include <QCryptographicHash>
#include <QStringList>

#include <algorithm>

namespace
{
/// A key that any path makes, however long.
QString KeyOf(const std::string& path)
{
    const QByteArray bytes = QByteArray::fromStdString(path);
    return QStringLiteral("units/") + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

/// The user's column whose numbers a column that fits fill estimates.
int MeasuredLike(int column)
{
    switch (column) {
    case columns::ExpCatchWt:
        return columns::CatchWt;
    case columns::ExpCatchNums:
        return columns::CatchNums;
    case columns::PopWt:
        return columns::TotCatchWt;
    case columns::PopNums:
        return columns::TotCatchNums;
    default:
        return column;
    }
}
} // namespace

std::string ColumnUnits::Of(const AxisMeasure& measure) const
{
    const auto unitOf = [this](int column) {
        const int like = MeasuredLike(column);
        return like >= AxisMeasure::kTime && like <= columns::kLastUser ? Typed(like) : std::string();
    };
    std::string unit = unitOf(measure.column);
    if (measure.per == AxisMeasure::kNone || unit.empty())
        return unit;
    const std::string per = unitOf(measure.per);
    return per.empty() ? std::string() : unit + " / " + per; // half a ratio would mislead
}

void ColumnUnits::Apply(GraphTitles& graph) const
{
    if (graph.XMeasure().column != AxisMeasure::kNone)
        graph.XUnit(Of(graph.XMeasure()));
    if (graph.YMeasure().column != AxisMeasure::kNone)
        graph.YUnit(Of(graph.YMeasure()));
}

void ColumnUnits::Load(const std::string& path)
{
    Clear();
    const QStringList kept = DesktopSettings().value(KeyOf(path)).toStringList();
    const std::size_t count = std::min(m_units.size(), static_cast<std::size_t>(kept.size()));
    for (std::size_t i = 0; i < count; ++i)
        m_units[i] = kept[static_cast<qsizetype>(i)].toStdString();
}

void ColumnUnits::Store(const std::string& path) const
{
    QSettings settings = DesktopSettings();
    if (std::ranges::all_of(m_units, &std::string::empty)) {
        settings.remove(KeyOf(path));
        return;
    }
    QStringList kept;
    for (const std::string& unit : m_units)
        kept += QString::fromStdString(unit);
    settings.setValue(KeyOf(path), kept);
}
