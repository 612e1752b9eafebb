// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/NumberTicker.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace
{

constexpr QChar kThinSpace(0x2009);
constexpr QChar kMinus(0x2212);
constexpr double kPowerFrom = 1e7;
constexpr double kPowerBelow = 1e-3;
constexpr double kGroupFrom = 1e4;
constexpr int kMostDecimals = 9;

/// Decimals that tell multiples of `step` apart.
int DecimalsOf(double step)
{
    double scaled = step;
    for (int decimals = 0; decimals < kMostDecimals; ++decimals, scaled *= 10.0)
        if (std::abs(scaled - std::round(scaled)) < 1e-6 * scaled && scaled >= 0.5)
            return decimals;
    return kMostDecimals;
}

QString Superscript(int number)
{
    static const QString digits = QStringLiteral("⁰¹²³⁴⁵⁶⁷⁸⁹");
    QString text = number < 0 ? QStringLiteral("⁻") : QString();
    for (const QChar digit : QString::number(std::abs(number)))
        text += digits[digit.digitValue()];
    return text;
}

QString FixedText(double value, int decimals, bool grouped)
{
    QString text = QString::number(std::abs(value), 'f', decimals);
    if (grouped) {
        const qsizetype point = text.indexOf('.');
        for (qsizetype at = (point < 0 ? text.size() : point) - 3; at > 0; at -= 3)
            text.insert(at, kThinSpace);
    }
    return value < 0.0 ? kMinus + text : text;
}

} // namespace

int PowerOfAxis(double step, double largest, NumberKind kind)
{
    if (kind == NumberKind::Period && largest < kPowerFrom)
        return 0;
    if (largest < kPowerFrom && largest >= kPowerBelow)
        return 0;
    return static_cast<int>(std::floor(std::log10(step) + 1e-9)); // steps of 1000 must not read as 999.99
}

QString PowerText(int power)
{
    return QStringLiteral("× 10") + Superscript(power);
}

QString TickText(double value, double step, double largest, NumberKind kind, int power)
{
    if (std::abs(value) < 1e-6 * step)
        return QStringLiteral("0"); // the sum of steps may miss zero by a rounding error
    const double unit = std::pow(10.0, power);
    const bool grouped = kind != NumberKind::Period && largest / unit >= kGroupFrom;
    return FixedText(value / unit, DecimalsOf(step / unit), grouped);
}

QString NumberAsText(double value)
{
    if (!std::isfinite(value))
        return QStringLiteral("no number");
    if (value == 0.0)
        return QStringLiteral("0");
    const double size = std::abs(value);
    const int exponent = static_cast<int>(std::floor(std::log10(size)));
    QString text;
    if (size >= kPowerFrom || size < kPowerBelow) {
        text = QString::number(size / std::pow(10.0, exponent), 'g', 6) + ' ' + PowerText(exponent);
        return value < 0.0 ? kMinus + text : text;
    }
    text = FixedText(value, std::clamp(5 - exponent, 0, 8), size >= kGroupFrom);
    while (text.contains('.') && (text.endsWith('0') || text.endsWith('.')))
        text.chop(1);
    return text;
}

NumberTicker::NumberTicker(const QCPAxis& axis, NumberKind kind) : m_axis(axis), m_kind(kind) {}

void NumberTicker::FixedStep(double origin, double step)
{
    setTickOrigin(origin);
    m_fixedStep = step;
}

// The size of the whole picture is used and not that of the axis, which is known only after the layout that
// asks for the ticks.
int NumberTicker::RoomFor(const QCPRange& range) const
{
    const QFontMetricsF metrics(m_axis.tickLabelFont());
    const QRect picture = m_axis.parentPlot()->viewport();
    if (m_axis.orientation() == Qt::Vertical) {
        const double height = picture.height() - 9.0 * metrics.height();
        return std::clamp(static_cast<int>(height / (2.6 * metrics.height())), 2, 7);
    }
    const double step = range.size() / 5.0;
    const double guess = std::pow(10.0, std::floor(std::log10(step)));
    const int power = PowerOfAxis(guess, m_largest, m_kind);
    const double label =
        std::max(metrics.horizontalAdvance(TickText(range.lower, guess, m_largest, m_kind, power)),
                 metrics.horizontalAdvance(TickText(range.upper, guess, m_largest, m_kind, power)));
    const double width = picture.width() - 7.0 * metrics.height();
    return std::clamp(static_cast<int>(width / (label + 2.2 * metrics.height())), 2, 8);
}

double NumberTicker::getTickStep(const QCPRange& range)
{
    m_largest = std::max(std::abs(range.lower), std::abs(range.upper));
    const int room = RoomFor(range);
    // The nearest readable step may give more ticks than asked for, and more than there is room for.
    for (int count = room; count >= 1; --count) {
        setTickCount(count);
        m_step = QCPAxisTicker::getTickStep(range);
        if (m_kind != NumberKind::Real) {
            m_step = std::max(1.0, m_step);
            if (m_step != std::round(m_step))
                m_step *= 2.0; // 2.5 is the one fraction among the steps from 1 on
        }
        if (range.size() / m_step <= room)
            break;
    }
    const double fixedTicks = m_fixedStep > 0.0 ? range.size() / m_fixedStep : 0.0;
    if (fixedTicks > 3.0 && fixedTicks < 8.0 && room >= 4)
        m_step = m_fixedStep;
    return m_step;
}

int NumberTicker::ChoosePower(const QCPRange& range)
{
    const double step = getTickStep(range);
    m_power = PowerOfAxis(step, m_largest, m_kind);
    return m_power;
}

int NumberTicker::getSubTickCount(double tickStep)
{
    if (m_kind == NumberKind::Real)
        return QCPAxisTicker::getSubTickCount(tickStep);
    if (tickStep <= 10.0)
        return static_cast<int>(std::lround(tickStep)) - 1; // one small tick for each period
    return 1;
}

QString NumberTicker::getTickLabel(double tick, const QLocale&, QChar, int)
{
    return TickText(tick, m_step, m_largest, m_kind, m_power);
}
