// Hours of work with the clipboard in a minute: clicks on all transforms, on all kinds of content, while another
// program copies, clears, hangs and dies before and in the middle of them.
//
//     RAVLIN_SOAK_CLICKS=10000 RAVLIN_SOAK_SEED=7 ./test -R Soak

#include "Engine/PasteboardService.h"
#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/Sanitizers.h"
#include "tests/platform/BackEnd.h"
#include "tests/platform/SoakTexts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

// ---- Between the calls of a click ----------------------------------------------------------------------------------

/// The moments of a click at which something can happen elsewhere.
enum class Moment : std::uint8_t { beforeFirstLook, beforeReading, beforeSecondLook, beforeWriting, afterWriting };
constexpr auto kMoments = std::to_array({Moment::beforeFirstLook, Moment::beforeReading, Moment::beforeSecondLook,
                                         Moment::beforeWriting, Moment::afterWriting});

/// The desktop's clipboard, and what another program does in the middle of a click.
class Interrupted final : public Pasteboard {
public:
    explicit Interrupted(SystemPasteboard& pasteboard) : pasteboard_(pasteboard) { setGeneral(this); }
    ~Interrupted() override { setGeneral(nullptr); }

    /// Runs `action` once, at that moment of the next click, if the click gets there.
    void interrupt(Moment moment, std::function<void()> action) {
        moment_ = moment;
        action_ = std::move(action);
        wasInterrupted_ = false;
    }
    bool wasInterrupted() const { return wasInterrupted_; }

    /// Call this after each click.
    void forget() {
        action_ = nullptr;
        lookCount_ = 0;
    }

    /// When the click looked at the counter for the last time.
    Clock::time_point latestLook() const { return latestLook_; }

    std::int64_t changeCount() override {
        reach(lookCount_++ == 0 ? Moment::beforeFirstLook : Moment::beforeSecondLook);
        latestLook_ = Clock::now();
        return pasteboard_.changeCount();
    }
    std::optional<std::string> string() override {
        reach(Moment::beforeReading);
        return pasteboard_.string();
    }
    std::optional<std::string> data(Type type) override { return pasteboard_.data(type); }
    std::optional<std::size_t> itemCount() override { return pasteboard_.itemCount(); }
    void clearContents() override { pasteboard_.clearContents(); }
    bool setString(std::string_view text) override { return pasteboard_.setString(text); }
    bool replaceIfUnchanged(std::int64_t count, std::string_view text) override {
        reach(Moment::beforeWriting);
        const bool isReplaced = pasteboard_.replaceIfUnchanged(count, text);
        reach(Moment::afterWriting);
        return isReplaced;
    }

private:
    void reach(Moment moment) {
        if (!action_ || moment != moment_) return;
        wasInterrupted_ = true;
        std::exchange(action_, nullptr)();
    }

    SystemPasteboard& pasteboard_;
    Moment moment_ = Moment::beforeFirstLook;
    std::function<void()> action_;
    Clock::time_point latestLook_;
    int lookCount_ = 0;
    bool wasInterrupted_ = false;
};

// ---- What a click has to result in ---------------------------------------------------------------------------------

/// What the clipboard holds: what another program gets from it, and the text that it is to us.
struct Held {
    std::string target;  // empty: the clipboard is empty
    std::string bytes;
    std::optional<std::string> text;
    bool isOurs = false;
};

Held textHeld(std::string text, bool isOurs) {
    return {.target = "UTF8_STRING", .bytes = text, .text = text, .isOurs = isOurs};
}

/// The result of a click: the answer, and what the clipboard holds afterwards.
struct Ending {
    PasteOutcome outcome;
    Held held;
};

/// Without any interruption.
Ending endingOf(TextTransform transform, const Held& before) {
    if (before.target.empty()) return {ClipboardEmpty{}, before};
    if (!before.text) return {NoText{}, before};
    if (before.text->empty()) return {ClipboardEmpty{}, before};
    const std::string result = transform.apply(*before.text);
    return {Success{Unicode::characterCount(*before.text), Unicode::characterCount(result)}, textHeld(result, true)};
}

/// With another program's copy in the middle.
Ending endingOf(TextTransform transform, const Held& before, Moment moment, const Held& copied) {
    switch (moment) {
        case Moment::beforeFirstLook: return endingOf(transform, copied);
        case Moment::beforeReading: {
            const PasteOutcome outcome = endingOf(transform, copied).outcome;
            return {std::holds_alternative<Success>(outcome) ? ClipboardChanged{} : outcome, copied};
        }
        case Moment::beforeSecondLook: return {ClipboardChanged{}, copied};
        case Moment::beforeWriting:
            // A text that is gone by then as well is no loss.
            if (copied.target.empty()) return endingOf(transform, before);
            break;
        case Moment::afterWriting: break;
    }
    return {endingOf(transform, before).outcome, copied};
}

const char* nameOf(const PasteOutcome& outcome) {
    constexpr std::array kNames = {"success", "clipboard empty", "no text", "clipboard changed"};
    return kNames.at(outcome.index());
}

// ---- The run -------------------------------------------------------------------------------------------------------

/// Whatever the text is, transforming it again and again must not fill the memory.
constexpr std::size_t kMaxKeptSize = 2'000'000;             // bytes
constexpr std::int64_t kMaxGrowth = std::int64_t{2} << 20;  // bytes

/// What this process has in memory, in bytes, once it has returned what it can; pages of its files do not count, since
/// they are loaded as they are looked at.
std::int64_t anonymousSize() {
    malloc_trim(0);
    std::ifstream status("/proc/self/status");
    std::int64_t kilobytes = 0;
    for (std::string word; status >> word;)
        if (word == "RssAnon:") status >> kilobytes;
    return kilobytes * 1024;
}

std::ptrdiff_t openFileCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// A click on our own text while another program copied again.
struct Race {
    Held theirs;
    Ending ofTheirs;
    Ending ofOurs;
    PasteOutcome outcome;
    bool wasLate = false;  // the copy was not yet made when the click looked at the counter for the last time
};

class Soak {
public:
    Soak(std::uint64_t clickCount, std::uint64_t seed) : clickCount_(clickCount), texts_(seed), random_(seed) {}

    void run();

private:
    // What happens, each with one click or a few.
    void clickSomehow();
    void clickAtPeace();
    void clickWhileOtherCopies();
    void clickWhileOtherCopiesAtAnyTime();
    void clickWhileOwnerDies();
    void clickWhileOwnerDiesInTheMiddle();
    void clickWhileOwnerHangs();

    // What the other program does.
    void copy(OwnerPlan plan, std::optional<std::string> text);
    void copyText();
    void copyAnything();
    void copySomething();
    void endOther();

    PasteOutcome click();
    void account(const Race& race);
    void expect(const Ending& ending, const PasteOutcome& outcome);
    void expectHeld(const Held& held);
    void expectNoSuccessAndNothingHeld(const PasteOutcome& outcome);
    void report(std::int64_t growth) const;

    std::size_t upTo(std::size_t limit) { return 1 + static_cast<std::size_t>(random_() % limit); }

    std::uint64_t clickCount_;
    SoakTexts texts_;
    std::mt19937_64 random_;
    std::unique_ptr<SystemPasteboard> pasteboard_ = openBackEnd();
    Interrupted clipboard_{*pasteboard_};
    std::unique_ptr<ForeignProgram> other_;
    Held held_;
    TextTransform transform_ = TextTransform::stripTracking;
    std::chrono::nanoseconds latestClick_{1ms};
    std::uint64_t clicksDone_ = 0;
    std::map<std::string, int> counts_;
};

void Soak::run() {
    std::int64_t warmSize = 0;
    std::ptrdiff_t fileCount = 0;
    copyText();  // a clipboard need not be empty at the start
    while (clicksDone_ < clickCount_ && !testing::Test::HasFailure()) {
        clickSomehow();
        if (warmSize != 0 || clicksDone_ < clickCount_ / 3) continue;
        endOther();
        warmSize = anonymousSize();
        fileCount = openFileCount();
    }
    endOther();
    const std::int64_t growth = anonymousSize() - warmSize;
    report(growth);
    EXPECT_EQ(openFileCount(), fileCount);
    if (kIsSanitized) return;
    EXPECT_LE(growth, kMaxGrowth);
}

void Soak::report(std::int64_t growth) const {
    std::cout << clicksDone_ << " clicks:";
    for (const auto& [name, count] : counts_) std::cout << "\n  " << name << ": " << count;
    std::cout << "\nmemory after the first third: " << (growth < 0 ? "" : "+") << growth / 1024 << " KiB, to "
              << anonymousSize() / 1024 << " KiB" << std::endl;
}

void Soak::clickSomehow() {
    // A program that hangs costs two seconds each time.
    const std::uint64_t hangEvery = std::max<std::uint64_t>(clickCount_ / (2 + clickCount_ / 2500), 1);
    if (clicksDone_ % hangEvery == hangEvery - 1) return clickWhileOwnerHangs();
    switch (upTo(20)) {
        case 1:
        case 2:
        case 3: return clickWhileOtherCopies();
        case 4:
        case 5: return clickWhileOtherCopiesAtAnyTime();
        case 6: return clickWhileOwnerDies();
        case 7: return clickWhileOwnerDiesInTheMiddle();
        default: return clickAtPeace();
    }
}

// ---- What the other program does -----------------------------------------------------------------------------------

void Soak::copy(OwnerPlan plan, std::optional<std::string> text) {
    other_ = copyElsewhere(plan);
    const OwnerPlan::Representation& first = plan.content.front();
    held_ = {.target = first.target, .bytes = first.bytes, .text = std::move(text)};
}

/// In one of the ways in which programs offer and hand over a text.
void Soak::copyText() {
    const std::string text = texts_.next();
    OwnerPlan plan = {.content = {{upTo(2) == 1 ? "UTF8_STRING" : "text/plain;charset=utf-8", text}}};
    if (upTo(4) == 1) plan.content.push_back({"text/html", "<b>other</b>"});
    if (upTo(10) == 1) plan.incrementSize = text.size() / upTo(4) + 1;
    if (upTo(10) == 1) plan.pauseBeforeAnswer = std::chrono::milliseconds(upTo(5));
    copy(plan, text);
}

void Soak::copyAnything() {
    const std::string number = std::to_string(random_());
    switch (upTo(9)) {
        case 1: return copy({.content = {{"text/rtf", "{\\rtf1 caf\\'e9 " + number + "}"}}}, "caf\u00e9 " + number);
        case 2: return copy({.content = {{"text/html", "<p>a <b>" + number + "</b></p>"}}}, "a " + number);
        case 3: return copy({.content = {{"STRING", "caf\xE9" + number}}}, "caf\u00e9" + number);
        case 4: return copy({.content = {{"UTF8_STRING", "caf\xE9" + number}}}, std::nullopt);
        case 5: return copy({.content = {{"image/png", "\x89PNG" + number}}}, std::nullopt);
        case 6: return copy({.content = {{"text/uri-list", "file:///" + number + "\r\n"}}}, std::nullopt);
        case 7: return copy({.content = {{"UTF8_STRING", ""}}}, "");
        case 8:
            copyText();
            other_->clear();
            held_ = {};
            return;
        default: copyText(); return endOther();
    }
}

void Soak::copySomething() {
    upTo(4) == 1 ? copyAnything() : copyText();
}

/// Ends the other program, and returns when that is known everywhere.
void Soak::endOther() {
    const bool isOwner = other_ != nullptr && !held_.isOurs && !held_.target.empty();
    other_.reset();
    if (!isOwner) return;
    held_ = {};
    expectHeld(held_);
}

// ---- Clicks --------------------------------------------------------------------------------------------------------

PasteOutcome Soak::click() {
    const auto start = Clock::now();
    const PasteOutcome outcome = PasteboardService::transformClipboard(transform_);
    latestClick_ = Clock::now() - start;
    clipboard_.forget();
    ++clicksDone_;
    ++counts_["outcome: "s + nameOf(outcome)];
    transform_ = TextTransform::allCases()[upTo(TextTransform::allCases().size()) - 1];
    return outcome;
}

void Soak::expect(const Ending& ending, const PasteOutcome& outcome) {
    EXPECT_STREQ(nameOf(outcome), nameOf(ending.outcome));
    EXPECT_TRUE(outcome == ending.outcome);
    expectHeld(ending.held);
}

/// What another program gets.
void Soak::expectHeld(const Held& held) {
    held_ = held;
    if (held.target.empty()) {
        EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return pasteboard_->itemCount() == 0U; }));
    } else {
        EXPECT_TRUE(pasteElsewhere(held.target, *pasteboard_) == held.bytes) << held.target << " of other content";
    }
}

void Soak::expectNoSuccessAndNothingHeld(const PasteOutcome& outcome) {
    EXPECT_FALSE(std::holds_alternative<Success>(outcome));
    other_.reset();
    expectHeld({});
}

void Soak::clickAtPeace() {
    SCOPED_TRACE("at peace: " + std::string(transform_.rawValue()));
    // The text of the last click again and again, but never one that grows forever.
    if (upTo(3) > 1 || held_.bytes.size() > kMaxKeptSize) copySomething();
    const Ending ending = endingOf(transform_, held_);
    expect(ending, click());
}

void Soak::clickWhileOtherCopies() {
    SCOPED_TRACE("while another program copies: " + std::string(transform_.rawValue()));
    copySomething();
    const Held before = held_;
    const TextTransform transform = transform_;
    const Moment moment = kMoments.at(upTo(kMoments.size()) - 1);
    clipboard_.interrupt(moment, [this] {
        letServerTimePass();
        copySomething();
    });
    const PasteOutcome outcome = click();
    const Held copied = clipboard_.wasInterrupted() ? held_ : before;
    expect(clipboard_.wasInterrupted() ? endingOf(transform, before, moment, copied) : endingOf(transform, before),
           outcome);
    if (clipboard_.wasInterrupted()) ++counts_["copied at a moment of the click"];
}

/// Regardless of how far the click is. What it copies may be transformed, but never replaced by the result of another
/// text; where that cannot be avoided, at least not unless it came after the click's last look.
void Soak::clickWhileOtherCopiesAtAnyTime() {
    SCOPED_TRACE("while another program copies at any time: " + std::string(transform_.rawValue()));
    copyText();
    const Held theirs = held_;
    const Ending first = endingOf(transform_, theirs);
    expect(first, click());
    letServerTimePass();

    const Ending ofTheirs = endingOf(transform_, theirs);
    const Ending ofOurs = endingOf(transform_, held_);
    const auto start = Clock::now() + std::chrono::nanoseconds(upTo(static_cast<std::size_t>(latestClick_.count())));
    auto copying = std::async(std::launch::async, [this, start] {
        while (Clock::now() < start) continue;
        other_->copyAgain();
        return Clock::now();
    });
    const PasteOutcome outcome = click();
    EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return copying.wait_for(0s) == std::future_status::ready; }));
    const bool wasLate = copying.get() >= clipboard_.latestLook();
    account({.theirs = theirs, .ofTheirs = ofTheirs, .ofOurs = ofOurs, .outcome = outcome, .wasLate = wasLate});
}

void Soak::account(const Race& race) {
    const auto found = pasteElsewhere(race.theirs.target, *pasteboard_);
    const bool isOfTheirs = race.outcome == race.ofTheirs.outcome;
    const bool isOfOurs = race.outcome == race.ofOurs.outcome;
    bool isRight = isOfTheirs;
    if (found == race.theirs.bytes) {
        ++counts_["copied at any time, and is there"];
        isRight = isOfTheirs || isOfOurs || std::holds_alternative<ClipboardChanged>(race.outcome);
        held_ = race.theirs;
        // A result can be the same text, and then there is no way to tell whose it is.
        if (found == race.ofTheirs.held.bytes || found == race.ofOurs.held.bytes) copyText();
    } else if (found == race.ofTheirs.held.bytes && isOfTheirs) {
        ++counts_["copied at any time, and transformed"];
        held_ = race.ofTheirs.held;
    } else {
        ++counts_["copied in the very moment of the write"];
        isRight = !kKeepsCopiesInTheMomentOfAWrite && race.wasLate && isOfOurs && found == race.ofOurs.held.bytes;
        held_ = race.ofOurs.held;
    }
    EXPECT_TRUE(isRight) << nameOf(race.outcome);
}

void Soak::clickWhileOwnerDies() {
    SCOPED_TRACE("while the program dies that has copied: " + std::string(transform_.rawValue()));
    copyText();
    const Ending ending = endingOf(transform_, held_);
    const Moment moment = kMoments.at(upTo(kMoments.size()) - 1);
    clipboard_.interrupt(moment, [this] { other_->process().kill(); });
    const PasteOutcome outcome = click();
    ++counts_["owner died"];
    // Whether the display knows about a death is a matter of microseconds.
    const bool isAlwaysRead = moment == Moment::beforeWriting || moment == Moment::afterWriting;
    const bool isRead = moment == Moment::beforeSecondLook && std::holds_alternative<Success>(outcome);
    if (!isAlwaysRead && !isRead) return expectNoSuccessAndNothingHeld(outcome);
    other_.reset();
    expect(ending, outcome);
}

void Soak::clickWhileOwnerDiesInTheMiddle() {
    SCOPED_TRACE("while the program dies in the middle of its answer: " + std::string(transform_.rawValue()));
    const std::string text = texts_.next() + "...";
    const std::size_t size = text.size() / 3 + 1;
    copy({.content = {{"UTF8_STRING", text}}, .incrementSize = size, .diesAfterIncrements = 1}, text);
    const Ending ofBeginning = endingOf(transform_, textHeld(text.substr(0, size), false));
    const PasteOutcome outcome = click();
    ++counts_["owner died in the middle of its answer"];
    if (!std::holds_alternative<Success>(outcome)) return expectNoSuccessAndNothingHeld(outcome);
    // No other program loses anything by that: its text went with it.
    EXPECT_FALSE(kTellsTheEndOfATextFromADeath);
    other_.reset();
    expect(ofBeginning, outcome);
    ++counts_["owner died in the middle of its answer, unnoticed"];
}

void Soak::clickWhileOwnerHangs() {
    SCOPED_TRACE("while the program hangs that has copied: " + std::string(transform_.rawValue()));
    const bool isInTheMiddle = counts_["owner hung"]++ % 2 == 1;
    const std::string text = texts_.next() + "...";
    OwnerPlan plan = {.content = {{"UTF8_STRING", text}}};
    if (isInTheMiddle) plan.incrementSize = text.size() / 3 + 1;
    if (isInTheMiddle) plan.stopsAfterIncrements = 1;
    copy(plan, text);
    if (!isInTheMiddle) other_->process().stop();
    const PasteOutcome outcome = click();
    other_->process().resume();
    expect({NoText{}, held_}, outcome);
}

// ---- The tests -----------------------------------------------------------------------------------------------------

std::uint64_t numberFrom(const char* variable, std::uint64_t otherwise) {
    const char* const text = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nothing sets it
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

TEST(Soak, EveryClickEndsAsItMustAndMemoryStaysFlat) {
    const std::uint64_t clickCount = numberFrom("RAVLIN_SOAK_CLICKS", 1000);
    const std::uint64_t seed = numberFrom("RAVLIN_SOAK_SEED", 1);
    std::cout << "seed " << seed << std::endl;
    Soak(clickCount, seed).run();
}

}  // namespace
}  // namespace ravlin::tests
