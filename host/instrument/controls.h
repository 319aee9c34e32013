#pragma once

#include "host/instrument/control_element.h"

#include <string_view>

namespace instrument {

// The registry of all controls, one per function name. Thread-safe.
class Controls
{
public:
    Controls();
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    // The control for that name, made on first request; the same name gives the same control,
    // valid to the end of the process. Takes a lock.
    ControlElement& getHandle(std::string_view name);

    // Turns every control on or off, those made later included.
    void setAllEnabled(bool on);

private:
    struct Registry;
    // Never destroyed: functions running during static destruction still hold their controls.
    Registry& m_registry;
};

extern Controls controls;

} // namespace instrument
