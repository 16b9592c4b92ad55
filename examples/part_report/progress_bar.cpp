#include "progress_bar.h"

#include <unistd.h>

#include <cstdio>

namespace part_report {

namespace {

constexpr int kWidth = 30;
constexpr char kEraseLine[] = "\r\x1b[K";

} // namespace

ProgressBar::ProgressBar() : m_isVisible(isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar()
{
    if (m_isVisible)
        std::fputs(kEraseLine, stderr);
}

void ProgressBar::Draw()
{
    const int percent = static_cast<int>(m_progress.computePercent());
    if (!m_isVisible || percent == m_drawnPercent)
        return;
    m_drawnPercent = percent;
    const int filled = percent * kWidth / 100;
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') +
                            std::string(static_cast<std::size_t>(kWidth - filled), '.');
    std::fprintf(stderr, "%s[%s] %3d %% %s", kEraseLine, bar.c_str(), percent, m_label.c_str());
    std::fflush(stderr);
}

ProgressBar::Task::Task(ProgressBar& bar, const char* label, std::uint64_t count) : m_bar(bar)
{
    m_bar.m_label = label;
    m_bar.m_progress.pushTask(count);
}

ProgressBar::Task::~Task()
{
    m_bar.m_progress.popTask();
    Step();
}

void ProgressBar::Task::Step()
{
    m_bar.m_progress.incrementNumElementsProcessed();
    m_bar.Draw();
}

} // namespace part_report
