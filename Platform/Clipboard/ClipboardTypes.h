#pragma once

#include "Engine/Pasteboard.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The MIME types by which texts go over a clipboard that names its representations by such types.
namespace ravlin::ClipboardTypes {

/// Which of the `offered` types is read as `type`, by the name under which it is offered; null where none is. Case and
/// spaces do not count.
///     best(Pasteboard::Type::string, {"text/plain", "text/plain; charset=UTF-8"})  ->  "text/plain; charset=UTF-8"
const std::string* best(Pasteboard::Type type, const std::vector<std::string>& offered);

/// The text, in UTF-8, that `bytes` mean as plain text of the type `name`; nothing where they are not valid.
///     decoded("UTF8_STRING", "caf\xE9")  ->  nothing
///     decoded("STRING", "caf\xE9")       ->  "caf\u00e9"
std::optional<std::string> decoded(std::string_view name, std::string bytes);

/// The types as which `text` is offered.
std::vector<std::string> servedTypes(std::string_view text);

/// The bytes of `text` as one of its `servedTypes`.
///     encoded("STRING", "caf\u00e9")  ->  "caf\xE9"
std::shared_ptr<const std::string> encoded(std::string_view name, std::shared_ptr<const std::string> text);

}  // namespace ravlin::ClipboardTypes
