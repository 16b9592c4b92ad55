#include <cadgeom/util/progress_percent.h>

#include <algorithm>

void ProgressPercent::pushTask(std::uint64_t numElements)
{
    m_tasks.push_back({numElements, 0});
}

void ProgressPercent::popTask()
{
    // Without a task the size wraps around and the vector refuses it.
    m_tasks.resize(m_tasks.size() - 1);
}

double ProgressPercent::computePercent() const
{
    double fraction = 0;
    for (auto task = m_tasks.rbegin(); task != m_tasks.rend(); ++task) {
        const std::uint64_t elements = std::max(task->numElements, task->numElementsProcessed);
        if (elements != 0) {
            fraction = (static_cast<double>(task->numElementsProcessed) + fraction) / static_cast<double>(elements);
        }
    }
    return std::clamp(fraction, 0.0, 1.0) * 100;
}
