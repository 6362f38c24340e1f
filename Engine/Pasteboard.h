#pragma once

#include "Engine/Support/NonCopyable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ravlin {

/// The system clipboard, as far as Ravlin needs it. Every operation is synchronous and bounded in time, never runs an
/// event loop, and is called from the user-interface thread. Implementations are in Platform/; tests have a fake.
class Pasteboard : NonCopyable {
public:
    /// The representations that can be read.
    enum class Type : std::uint8_t { string, rtf, html };

    Pasteboard() = default;
    virtual ~Pasteboard();

    /// A number that grows with every change to the clipboard's content by any application, this one included. Reflects
    /// every change that happened before the call.
    virtual std::int64_t changeCount() = 0;

    /// The plain text as valid UTF-8: nothing if there is none (or it is not valid UTF-8, or its owner does not answer
    /// in time), "" if it is present but empty.
    virtual std::optional<std::string> string() = 0;

    /// The raw bytes of one representation, or nothing.
    virtual std::optional<std::string> data(Type type) = 0;

    /// How many items the clipboard holds: 0 for an empty clipboard, nothing if that is unknown.
    virtual std::optional<std::size_t> itemCount() = 0;

    /// Empties the clipboard. If `setString` follows, other applications see only one change.
    virtual void clearContents() = 0;

    /// Puts one plain-text item on the clipboard. False if the system refused it.
    virtual bool setString(std::string_view text) = 0;

    /// Replaces the whole content with one plain-text item, as one change, unless there has been a change since
    /// `changeCount` returned `count`. False if there was, which leaves the clipboard alone, or if the system refused
    /// it. A copy lost because its application quit does not count as a change: there is nothing left to lose.
    virtual bool replaceIfUnchanged(std::int64_t count, std::string_view text) = 0;

    /// The clipboard of the desktop in use: the one installed by `setGeneral`, or one that is always empty.
    static Pasteboard& general() noexcept;

    /// Installs `pasteboard` as the general one; null removes it. The caller keeps ownership, and must remove it before
    /// destroying it.
    static void setGeneral(Pasteboard* pasteboard) noexcept;
};

}  // namespace ravlin
