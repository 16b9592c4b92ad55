// Shows one percentage for nested work: three meshes of different size, each with facets to check. A task counts as one
// element of the task around it.

#include <cadgeom/util/progress_percent.h>

#include <cstdio>

namespace {

// A line for each step of at least 10 percent; a host would move a bar.
class Display {
public:
    void Show(double percent)
    {
        if (percent >= m_next) {
            std::printf("%5.1f %%\n", percent);
            m_next = percent + 10;
            ++m_lines;
        }
    }
    int Lines() const { return m_lines; }

private:
    double m_next = 0;
    int m_lines = 0;
};

} // namespace

int main()
{
    constexpr unsigned kFacets[] = {200, 50, 1000};
    ProgressPercent progress;
    Display display;
    double last = 0;
    bool isSteady = true;

    progress.pushTask(3);
    for (const unsigned facets : kFacets) {
        progress.pushTask(facets);
        for (unsigned i = 0; i < facets; ++i) {
            // The work on a facet stands here.
            progress.incrementNumElementsProcessed();
            const double percent = progress.computePercent();
            isSteady = isSteady && percent >= last;
            last = percent;
            display.Show(percent);
        }
        progress.popTask();
        progress.incrementNumElementsProcessed();
    }
    std::printf("%5.1f %% at the end\n", progress.computePercent());
    return isSteady && progress.computePercent() == 100 && display.Lines() >= 9 ? 0 : 1;
}
