// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <qcustomplot.h>

/// What the numbers of an axis are.
enum class NumberKind {
    Real,   ///< any value: "12 500", "0.025"
    Count,  ///< whole numbers, grouped by thousands
    Period, ///< whole numbers without grouping, so that a year reads 1975
};

/// The power of ten that the numbers of an axis are shown in, 0 for none: from 10 million on and below one
/// thousandth. No tick but 0 then reads less than 1.
/// \param step     distance of two ticks, > 0 \param largest  largest magnitude on the axis
int PowerOfAxis(double step, double largest, NumberKind kind = NumberKind::Real);

/// "× 10⁹", stated once beside the title of an axis.
QString PowerText(int power);

/// The text of a tick, in units of 10 to the `power`. All ticks of one axis share decimals.
/// \param step, largest as above; the step decides how many decimals are shown
QString TickText(double value, double step, double largest, NumberKind kind, int power);

/// One number by itself, with at most six significant digits.
QString NumberAsText(double value);

/// Ticks that suit the length of their axis: as many as there is room for without labels touching.
class NumberTicker : public QCPAxisTicker
{
public:
    /// \param axis  the axis that will own this ticker
    NumberTicker(const QCPAxis& axis, NumberKind kind);

    /// Ticks at origin + k * step while the axis shows about this many of them; a zoomed axis chooses its
    /// own.
    void FixedStep(double origin, double step);

    /// Chooses the power of ten for `range` and keeps it until it is asked again: the title of the axis
    /// states it, whatever size a picture is drawn in later.
    int ChoosePower(const QCPRange& range);

protected:
    double getTickStep(const QCPRange& range) override;
    int getSubTickCount(double tickStep) override;
    QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override;

private:
    int RoomFor(const QCPRange& range) const;

    const QCPAxis& m_axis;
    NumberKind m_kind;
    double m_fixedStep = 0.0;
    double m_step = 1.0;
    double m_largest = 1.0;
    int m_power = 0;
};
