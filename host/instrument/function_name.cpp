#include "host/instrument/function_name.h"

#include <algorithm>
#include <array>

namespace instrument {

namespace {

// Clang and MSVC spell the anonymous namespace differently from GCC; settle on GCC's.
std::string withUniformAnonymousNamespace(std::string_view signature)
{
    static constexpr std::array<std::string_view, 2> spellings{"(anonymous namespace)", "`anonymous namespace'"};
    static constexpr std::string_view uniform = "{anonymous}";
    std::string result(signature);
    for (const std::string_view spelling : spellings) {
        for (auto at = result.find(spelling); at != std::string::npos; at = result.find(spelling, at))
            result.replace(at, spelling.size(), uniform);
    }
    return result;
}

bool endsWith(std::string_view text, std::string_view tail)
{
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// Where the parameter list begins: the '(' that matches the last ')'.
std::string_view::size_type parameterListStart(std::string_view signature)
{
    const auto close = signature.rfind(')');
    if (close == std::string_view::npos)
        return std::string_view::npos;
    int depth = 0;
    for (auto i = close + 1; i-- > 0;) {
        if (signature[i] == ')')
            ++depth;
        else if (signature[i] == '(' && --depth == 0)
            return i;
    }
    return std::string_view::npos;
}

// The last word outside template brackets: the qualified name behind return type and specifiers.
std::string_view lastWord(std::string_view head)
{
    int angle = 0;
    std::string_view::size_type start = 0;
    for (auto i = head.size(); i-- > 0;) {
        const char c = head[i];
        if (c == '>')
            ++angle;
        else if (c == '<')
            angle = std::max(0, angle - 1);
        else if (c == ' ' && angle == 0) {
            start = i + 1;
            break;
        }
    }
    std::string_view word = head.substr(start);
    // Clang binds pointer and reference marks of the return type to the name: "char *Foo::name()".
    while (!word.empty() && (word.front() == '*' || word.front() == '&'))
        word.remove_prefix(1);
    return word;
}

} // namespace

std::string makePlatformFunctionNameUniform(std::string_view name, std::string_view prettyFunction)
{
    const std::string signature = withUniformAnonymousNamespace(prettyFunction);
    std::string_view rest = signature;
    // GCC appends template arguments: "void Foo<T>::bar() [with T = int]".
    if (const auto with = rest.find(" [with "); with != std::string_view::npos)
        rest = rest.substr(0, with);
    const auto open = parameterListStart(rest);
    if (open == std::string_view::npos)
        return std::string(name);
    const std::string_view qualified = lastWord(rest.substr(0, open));
    if (qualified == name || endsWith(qualified, std::string("::").append(name)))
        return std::string(qualified);
    return std::string(name);
}

} // namespace instrument
