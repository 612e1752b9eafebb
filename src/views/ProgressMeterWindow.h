// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"

#include <QDialog>
#include <QTimer>

#include <cstdint>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

/// The meter of long work on the desktop. It appears when the work takes longer than a moment, and from its
/// start on keeps the user from starting a second work. It gives the event queue its turn, but never more
/// often than the eye needs.
class ProgressMeterWindow : public QDialog, public IProgressMeter
{
    Q_OBJECT

public:
    using Clock = std::function<std::int64_t()>; ///< milliseconds since any fixed moment

    /// \param clock  empty for the machine's steady clock
    explicit ProgressMeterWindow(QWidget* parent = nullptr, Clock clock = {});

    /// A work that starts as another one ends takes over its window.
    void Start(const std::string& title, int maximum) override;
    void Value(int value) override;
    /// Stays true until the next Start.
    bool Cancelled() override;
    /// The window goes at the next turn of the event queue.
    void Finish() override;

public slots:
    /// Cancel, Escape and the close box all ask the work to end; the window waits for it.
    void reject() override;

private:
    void Build();
    void Refresh();
    void GiveEventsATurn();
    void ShowTimeLeft(std::int64_t now);

    Clock m_clock;
    QLabel* m_lblTitle = nullptr;
    QLabel* m_lblTimeLeft = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    QTimer m_hide;
    std::int64_t m_started = 0;
    std::int64_t m_lastTurn = 0;
    std::int64_t m_lastTimeLeft = 0;
    int m_value = 0;
    int m_maximum = 0;
    bool m_running = false;
    bool m_cancelled = false;
    bool m_inTurn = false;
};
