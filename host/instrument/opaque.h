#pragma once

#include <atomic>

namespace instrument {

// The two flags of a control that every instrumented function reads. They are read without
// ordering (relaxed), so a change reaches running functions at some later event.
struct Opaque
{
    // Events of this control are reported.
    std::atomic<bool> enabled{false};
    // Whether an event is reported depends on its context, answered by the control's filter.
    std::atomic<bool> contextFiltered{false};

protected:
    // Only ControlElement presents an Opaque; listeners rely on that to reach the control's name.
    Opaque() = default;
    ~Opaque() = default;
};

} // namespace instrument
