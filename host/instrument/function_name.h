#pragma once

#include <string>
#include <string_view>

namespace instrument {

// Names a function the same way whatever compiler spelt its signature: the qualified name out of
// prettyFunction (e.g. "RenderHandler::OnPaint" out of "virtual void RenderHandler::OnPaint(...)"),
// or name itself when the signature does not end in a function called name.
std::string makePlatformFunctionNameUniform(std::string_view name, std::string_view prettyFunction);

} // namespace instrument
