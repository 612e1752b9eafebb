// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <qcustomplot.h>

/// What the numbers of an axis are.
enum class NumberKind {
    Real,   ///< any value: "12 500", "0.025", "1.5 × 10⁹"
    Count,  ///< whole numbers, grouped by thousands
    Period, ///< whole numbers without grouping, so that a year reads 1975
};

/// The text of a tick. All ticks of one axis share decimals and exponent.
///
/// \param step     distance of two ticks, > 0; decides how many decimals are shown
/// \param largest  largest magnitude on the axis; decides about the power of ten: from 10 million on and
///                 below one thousandth
QString TickText(double value, double step, double largest, NumberKind kind = NumberKind::Real);

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
};
