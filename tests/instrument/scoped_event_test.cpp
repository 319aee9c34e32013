#include "recording_listener.h"

#include "host/instrument/instrument.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>

using instrument::EventId;

// Instrumented functions whose controls the tests steer.
struct InstrumentProbe
{
    void plain() { BROVIA_INSTRUMENT("plain"); }
    void withContext(const std::string& script) { BROVIA_INSTRUMENT_CONTEXT("withContext", "script", (++built, script)); }
    void throwing() { BROVIA_INSTRUMENT("throwing"); throw std::runtime_error("body failed"); }
    void during(const std::function<void()>& body) { BROVIA_INSTRUMENT("during"); body(); }

    int built = 0; // context values built
};

namespace {

instrument::ControlElement& control(const char* function)
{
    return instrument::controls.getHandle(std::string("InstrumentProbe::") + function);
}

class ScopedEventTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* function : {"plain", "withContext", "throwing", "during"}) {
            control(function).setEnabled(true);
            control(function).setContextFilter({});
        }
    }

    // withContext's filter answers verdict.
    void filterContext(int verdict)
    {
        control("withContext").setContextFilter([this, verdict](const instrument::ContextSet&) {
            ++filterCalls;
            return verdict;
        });
    }

    InstrumentProbe probe;
    int filterCalls = 0;
};

TEST_F(ScopedEventTest, NobodyListeningAsksNothingAndBuildsNoContext)
{
    filterContext(1);
    probe.withContext("x");
    EXPECT_EQ(probe.built, 0);
    EXPECT_EQ(filterCalls, 0);

    // A listener arriving in the middle sees a stop without a start.
    std::unique_ptr<RecordingListener> late;
    probe.during([&] { late = std::make_unique<RecordingListener>(); });
    ASSERT_EQ(late->reports.size(), 1u);
    EXPECT_FALSE(late->reports[0].start);
    EXPECT_EQ(late->reports[0].id, EventId::notListening());
}

TEST_F(ScopedEventTest, StartAndStopShareAFreshIdAndTheOnceFetchedControl)
{
    RecordingListener listener;
    probe.plain();
    probe.plain();
    const auto& r = listener.reports;
    ASSERT_EQ(r.size(), 4u);
    EXPECT_TRUE(r[0].start && !r[1].start && r[2].start && !r[3].start);
    EXPECT_EQ(r[1].id, r[0].id);
    EXPECT_EQ(r[3].id, r[2].id);
    EXPECT_NE(r[2].id, r[0].id);
    EXPECT_NE(r[0].id.high, 0u);
    EXPECT_EQ(r[0].control, &control("plain"));
    EXPECT_EQ(r[2].control, r[0].control);
}

TEST_F(ScopedEventTest, ContextFilterDecidesTheStartOnly)
{
    RecordingListener listener;
    const auto& r = listener.reports;

    // Control off, no filter: nothing.
    control("plain").setEnabled(false);
    control("withContext").setEnabled(false);
    probe.plain();
    probe.withContext("zero");
    EXPECT_TRUE(r.empty());

    // 1 starts although the control is off; the stop follows the control and is not sent.
    filterContext(1);
    probe.withContext("first");
    ASSERT_EQ(r.size(), 1u);
    EXPECT_TRUE(r[0].start);
    EXPECT_EQ(r[0].context, "script=first;");

    // 2 refuses the start while the control is on; the stop comes anyway, without a start.
    filterContext(2);
    control("withContext").setEnabled(true);
    probe.withContext("second");
    ASSERT_EQ(r.size(), 2u);
    EXPECT_FALSE(r[1].start);
    EXPECT_EQ(r[1].id, EventId::notStarted());

    // 0 leaves it to the control.
    filterContext(0);
    probe.withContext("third");
    control("withContext").setEnabled(false);
    probe.withContext("fourth");
    ASSERT_EQ(r.size(), 4u);
    EXPECT_TRUE(r[2].start);
    EXPECT_EQ(r[3].id, r[2].id);
    EXPECT_EQ(r[1].context + r[3].context, "");
    EXPECT_EQ(filterCalls, 4);
}

class ThrowingListener : public RecordingListener
{
    void onStop(const instrument::ControlElement&, const instrument::ContextSet&, EventId,
                std::optional<unsigned long>) override
    {
        throw std::logic_error("listener failed");
    }
};

TEST_F(ScopedEventTest, StopsOnEveryWayOut)
{
    ThrowingListener thrower; // first in line; its failure must not stop the others or terminate
    RecordingListener listener;
    EXPECT_THROW(probe.throwing(), std::runtime_error);
    ASSERT_EQ(listener.reports.size(), 2u);
    EXPECT_EQ(listener.reports[1].id, listener.reports[0].id);

    {
        instrument::ScopedEvent early(control("plain"));
        early.stop();
        EXPECT_EQ(listener.reports.size(), 4u);
    }
    EXPECT_EQ(listener.reports.size(), 4u);
}

TEST(Listeners, EnabledWhileAnyListenerInstalled)
{
    EXPECT_FALSE(instrument::listeners.enabled);
    {
        RecordingListener a;
        {
            RecordingListener b;
            instrument::listeners.add(&b); // twice counts once
        }
        EXPECT_TRUE(instrument::listeners.enabled);
    }
    EXPECT_FALSE(instrument::listeners.enabled);
}

} // namespace
