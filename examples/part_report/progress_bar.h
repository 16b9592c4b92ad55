#pragma once
// A bar on the terminal that says what the program is doing and how far it is.

#include <cadgeom/util/progress_percent.h>

#include <cstdint>
#include <string>

namespace part_report {

/// Draws on the standard error stream, and only when that is a terminal. The bar disappears when the object does.
class ProgressBar {
public:
    ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    /// Work of `count` steps. A task that starts while another one lives is one step of that one.
    class Task {
    public:
        Task(ProgressBar& bar, const char* label, std::uint64_t count);
        Task(const Task&) = delete;
        Task& operator=(const Task&) = delete;
        ~Task();

        void Step();

    private:
        ProgressBar& m_bar;
    };

private:
    void Draw();

    ProgressPercent m_progress;
    std::string m_label;
    bool m_isVisible;
    int m_drawnPercent = -1;
};

} // namespace part_report
