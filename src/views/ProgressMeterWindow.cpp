// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ProgressMeterWindow.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFontMetrics>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace
{

constexpr std::int64_t kAppearsAfter = 300;   // ms; shorter work passes unseen
constexpr std::int64_t kBetweenTurns = 15;    // ms; well under the 100 ms in which Cancel must act
constexpr std::int64_t kBetweenTimes = 1000;  // ms; a time left that changes faster cannot be read
constexpr std::int64_t kTimeLeftAfter = 1000; // ms; before that it is a guess

std::int64_t SteadyMilliseconds()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

QString Duration(std::int64_t milliseconds)
{
    const std::int64_t seconds = (milliseconds + 999) / 1000;
    if (seconds < 60)
        return ProgressMeterWindow::tr("%1 s left").arg(seconds);
    return ProgressMeterWindow::tr("%1 min %2 s left").arg(seconds / 60).arg(seconds % 60);
}

} // namespace

ProgressMeterWindow::ProgressMeterWindow(QWidget* parent, Clock clock)
    : QDialog(parent), m_clock(clock ? std::move(clock) : SteadyMilliseconds)
{
    setObjectName(QStringLiteral("ProgressMeter"));
    setWindowTitle(QStringLiteral("VELT 3.0"));
    setWindowModality(Qt::ApplicationModal);
    Build();
    m_hide.setSingleShot(true);
    connect(&m_hide, &QTimer::timeout, this, &QWidget::hide);
}

void ProgressMeterWindow::Build()
{
    m_lblTitle = new QLabel(this);
    m_lblTitle->setObjectName(QStringLiteral("lblTitle"));
    m_lblTitle->setTextFormat(Qt::PlainText);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("barProgress"));
    m_bar->setMinimumWidth(22 * QFontMetrics(font()).height());
    m_lblTimeLeft = new QLabel(this);
    m_lblTimeLeft->setObjectName(QStringLiteral("lblTimeLeft"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_cmdCancel = buttons->button(QDialogButtonBox::Cancel);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressMeterWindow::reject);
    auto* column = new QVBoxLayout(this);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_lblTitle, m_bar, m_lblTimeLeft, buttons})
        column->addWidget(widget);
}

void ProgressMeterWindow::Start(const std::string& title, int maximum)
{
    m_hide.stop();
    m_running = true;
    m_cancelled = false;
    m_value = 0;
    m_maximum = std::max(0, maximum);
    m_started = m_lastTurn = m_clock();
    m_lastTimeLeft = m_started - kBetweenTimes;
    m_lblTitle->setText(QString::fromStdString(title));
    m_lblTimeLeft->clear();
    m_cmdCancel->setEnabled(true);
    m_bar->setRange(0, m_maximum); // 0 to 0 shows that something goes on, but not how far
    m_bar->setValue(0);
}

void ProgressMeterWindow::Value(int value)
{
    m_value = std::clamp(value, 0, m_maximum);
    GiveEventsATurn();
}

bool ProgressMeterWindow::Cancelled()
{
    GiveEventsATurn(); // a loop that retries without getting on must end by Cancel, too
    return m_cancelled;
}

void ProgressMeterWindow::Finish()
{
    m_running = false;
    m_hide.start(0);
}

void ProgressMeterWindow::reject()
{
    if (!m_running)
        return;
    m_cancelled = true;
    m_cmdCancel->setEnabled(false);
    m_lblTimeLeft->setText(tr("Cancelling..."));
}

void ProgressMeterWindow::GiveEventsATurn()
{
    const std::int64_t now = m_clock();
    if (!m_running || m_inTurn || now - m_lastTurn < kBetweenTurns)
        return;
    m_inTurn = true;
    if (!isVisible() && now - m_started >= kAppearsAfter)
        show();
    if (isVisible()) {
        Refresh();
        ShowTimeLeft(now);
    }
    // Before the window is there to block them, clicks wait: none of them may start a second work.
    QCoreApplication::processEvents(isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    m_inTurn = false;
    m_lastTurn = m_clock();
}

void ProgressMeterWindow::Refresh()
{
    if (m_bar->value() != m_value)
        m_bar->setValue(m_value);
}

void ProgressMeterWindow::ShowTimeLeft(std::int64_t now)
{
    if (m_cancelled || m_value == 0 || now - m_started < kTimeLeftAfter ||
        now - m_lastTimeLeft < kBetweenTimes)
        return;
    m_lastTimeLeft = now;
    m_lblTimeLeft->setText(Duration((now - m_started) * (m_maximum - m_value) / m_value));
}
