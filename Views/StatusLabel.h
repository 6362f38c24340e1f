#pragma once

#include "Views/TextLabel.h"

namespace ravlin {

/// The status line's text, which assistive technology announces as a notification.
class StatusLabel final : public TextLabel {
    Q_OBJECT

public:
    using TextLabel::TextLabel;

    /// Has the text read out now, even if it is the same as before.
    void announce();
};

}  // namespace ravlin
