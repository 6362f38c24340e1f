#pragma once

#include "Engine/Support/NonCopyable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravlin {

/// The system clipboard, as far as Ravlin needs it. Every operation is synchronous and bounded in time, never runs an
/// event loop, and is called from the user-interface thread. Implementations stand in Platform/; tests have a fake.
class Pasteboard : NonCopyable {
public:
    /// The representations that can be read.
    enum class Type : std::uint8_t { string, rtf, html };

    Pasteboard() = default;
    virtual ~Pasteboard();

    /// A number that grows with every change of the clipboard's content by any application, this one included.
    /// Includes every change that happened before the call.
    virtual std::int64_t changeCount() = 0;

    /// The plain text as valid UTF-8: nothing where there is none (or where it is not valid UTF-8, or its owner does
    /// not answer in time), "" where it is present and empty.
    virtual std::optional<std::string> string() = 0;

    /// The raw bytes of one representation, or nothing.
    virtual std::optional<std::string> data(Type type) = 0;

    /// How many items the clipboard holds: 0 for an empty clipboard, nothing where that cannot be told.
    virtual std::optional<std::size_t> itemCount() = 0;

    /// Empties the clipboard. Followed by `setString`, other applications see one change only.
    virtual void clearContents() = 0;

    /// Puts one plain-text item on the clipboard. False where the system refused it.
    virtual bool setString(std::string_view text) = 0;

    /// Replaces the whole content by one plain-text item, as one change, unless there has been a change since
    /// `changeCount` gave `count`. False where there was, which leaves the clipboard alone, or the system refused it.
    /// That an application took its copy along when it ended is no such change: there is nothing to lose.
    virtual bool replaceIfUnchanged(std::int64_t count, std::string_view text) = 0;

    /// The clipboard of the desktop in use: the one installed by `setGeneral`, or one that is always empty.
    static Pasteboard& general() noexcept;

    /// Installs `pasteboard` as the general one; null removes it. The caller keeps owning it, and removes it before
    /// destroying it.
    static void setGeneral(Pasteboard* pasteboard) noexcept;
};

}  // namespace ravlin
