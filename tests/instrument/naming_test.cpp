#include "host/instrument/context_entry.h"
#include "host/instrument/controls.h"
#include "host/instrument/function_name.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

TEST(FunctionName, QualifiedNameOutOfCompilerSignatures)
{
    const char* const cases[][3] = {
        {"cleanup", "void BrowserClient::cleanup()", "BrowserClient::cleanup"},
        {"OnPaint", "virtual void RenderHandler::OnPaint(CefRefPtr<CefBrowser>, const RectList&, const void*, int)",
         "RenderHandler::OnPaint"},
        {"get", "std::map<std::__cxx11::basic_string<char>, int> ns::Foo::get() const &", "ns::Foo::get"},
        {"run", "void Holder<T>::run(std::function<void(int)>) [with T = std::pair<int, int>]", "Holder<T>::run"},
        {"name", "const char *Foo::name() const", "Foo::name"},
        {"cleanup", "void __cdecl BrowserClient::cleanup(void)", "BrowserClient::cleanup"},
        {"run", "void (anonymous namespace)::Worker::run()", "{anonymous}::Worker::run"},
        {"operator()", "void Foo::operator()(int)", "Foo::operator()"},
        // Not recognisable: the plain name.
        {"cleanup", "BrowserClient::cleanup()::<lambda()>", "cleanup"},
        {"bar", "void Foo::xbar()", "bar"},
        {"f", "void f)(", "f"},
        {"f", "", "f"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(instrument::makePlatformFunctionNameUniform(c[0], c[1]), c[2]) << c[1];
}

TEST(ContextEntryLessByName, OrdersByBytesThenLength)
{
    const auto less = [](std::string_view a, std::string_view b) {
        return instrument::ContextEntryLessByName()({a, {}}, {b, {}});
    };
    EXPECT_TRUE(less("ab", "abc"));
    EXPECT_FALSE(less("abc", "ab"));
    EXPECT_TRUE(less("abc", "abd"));
    EXPECT_TRUE(less("abc", "b")); // the common prefix decides before the length
    EXPECT_TRUE(less("z", "\xc3\xa9")); // bytes compare unsigned
    EXPECT_FALSE(less("url", "url"));
}

TEST(Controls, OneControlPerNameFromAnyThread)
{
    std::vector<const instrument::ControlElement*> seen(4);
    std::vector<std::thread> threads;
    for (auto& slot : seen)
        threads.emplace_back([&slot] { slot = &instrument::controls.getHandle("Controls::shared"); });
    for (auto& thread : threads)
        thread.join();
    for (const auto* control : seen)
        EXPECT_EQ(control, seen[0]);
    EXPECT_EQ(seen[0]->name(), "Controls::shared");
    EXPECT_NE(&instrument::controls.getHandle("Controls::other"), seen[0]);

    // Turning all on reaches controls made later.
    instrument::controls.setAllEnabled(true);
    const bool laterOn = instrument::controls.getHandle("Controls::later").enabled;
    instrument::controls.setAllEnabled(false);
    EXPECT_TRUE(laterOn);
    EXPECT_FALSE(seen[0]->enabled);
}

} // namespace
