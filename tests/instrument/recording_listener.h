#pragma once

#include "host/instrument/listeners.h"

#include <string>
#include <vector>

// Records every report while it lives, installed from construction to destruction.
class RecordingListener : public instrument::Listener
{
public:
    struct Report
    {
        bool start;
        const instrument::ControlElement* control;
        std::string context; // "name=value;" per entry
        instrument::EventId id;
    };

    RecordingListener() { instrument::listeners.add(this); }
    ~RecordingListener() override { instrument::listeners.remove(this); }

    void onStart(const instrument::ControlElement& control, const instrument::ContextSet& context,
                 instrument::EventId id, std::optional<unsigned long>) override
    {
        std::string text;
        for (const auto& entry : context)
            text.append(entry.name).append("=").append(entry.value).append(";");
        reports.push_back({true, &control, text, id});
    }
    void onStop(const instrument::ControlElement& control, const instrument::ContextSet& context,
                instrument::EventId id, std::optional<unsigned long>) override
    {
        reports.push_back({false, &control, context.empty() ? "" : "unexpected", id});
    }

    std::vector<Report> reports;
};
