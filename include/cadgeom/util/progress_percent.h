#pragma once
/// @file
/// Turns the progress of nested loops into one percentage.

#include <cadgeom/core/export.h>

#include <cstdint>
#include <vector>

/// A stack of nested tasks, each with a number of elements and a count of elements done. An inner task counts as the
/// fraction of one element of the task around it: 1 of 4 elements inside, 3 of 10 outside are 32.5 percent.
///
/// Copies are independent; moving leaves the source empty. An object belongs to one thread at a time.
///
/// @code
/// ProgressPercent progress;
/// progress.pushTask(meshes.size());
/// for (const Mesh& mesh : meshes) {
///     progress.pushTask(mesh.triangles.size());
///     for (const Triangle& triangle : mesh.triangles) {
///         work(triangle);
///         progress.incrementNumElementsProcessed();
///         show(progress.computePercent());
///     }
///     progress.popTask();
///     progress.incrementNumElementsProcessed();
/// }
/// @endcode
class CADGEOM_API ProgressPercent {
public:
    /// Adds a task with no element done as the new innermost one.
    /// @param numElements  number of elements of the task; 0 is allowed and neither adds nor hides progress
    void pushTask(std::uint64_t numElements);

    /// Removes the innermost task; throws std::length_error, changing nothing, when there is none.
    void popTask();

    /// Sets the number of elements done in the innermost task; does nothing when there is no task. A number above
    /// the announced one counts as complete.
    inline void setNumElementsProcessed(std::uint64_t numElementsProcessed);

    /// Adds one to the number of elements done in the innermost task; does nothing when there is no task.
    inline void incrementNumElementsProcessed();

    /// The overall percentage, from 0 to 100; 0 when there is no task. The cost grows with the number of tasks.
    double computePercent() const;

    /// Removes all tasks and keeps their memory for later ones.
    void reset() { m_tasks.clear(); }

    /// Whether there is no task.
    bool isEmpty() const { return m_tasks.empty(); }

private:
    struct Task {
        std::uint64_t numElements;
        std::uint64_t numElementsProcessed;
    };

    std::vector<Task> m_tasks; // the innermost task is the last
};

inline void ProgressPercent::setNumElementsProcessed(std::uint64_t numElementsProcessed)
{
    if (!m_tasks.empty()) {
        m_tasks.back().numElementsProcessed = numElementsProcessed;
    }
}

inline void ProgressPercent::incrementNumElementsProcessed()
{
    if (!m_tasks.empty()) {
        ++m_tasks.back().numElementsProcessed;
    }
}
