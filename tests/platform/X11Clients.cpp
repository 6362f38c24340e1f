#include "tests/platform/X11Clients.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

/// No atom has this number or a higher one.
constexpr xcb_atom_t kNoAtoms = 1'000'000;

/// What runs in the process of a ForeignOwner.
class OwnerProgram {
public:
    OwnerProgram(const OwnerPlan& plan, int commands, int replies)
        : plan_(plan), commands_(commands), replies_(replies) {
        client_.own();
        reply(ForeignProgram::kObeyed);
    }

    void run() {
        handleEvents();
        std::array<pollfd, 2> waited = {pollfd{.fd = commands_, .events = POLLIN, .revents = 0},
                                        pollfd{xcb_get_file_descriptor(client_.get()), POLLIN, 0}};
        while (poll(waited.data(), waited.size(), -1) > 0) {
            handleEvents();
            char letter = 0;
            if ((waited[0].revents & POLLHUP) != 0) return;
            if ((waited[0].revents & POLLIN) != 0 && read(commands_, &letter, 1) == 1) obey(letter);
        }
    }

private:
    struct Transfer {
        OwnerPlan::Representation content;
        std::size_t offset = 0;
        int incrementCount = 0;
    };
    using Destination = std::pair<xcb_window_t, xcb_atom_t>;

    void reply(char letter) {
        client_.synchronise();
        if (write(replies_, &letter, 1) != 1) _exit(1);
    }

    void obey(char letter) {
        switch (letter) {
            case 'c': client_.own(); break;
            case 'm':
                for (int i = 0; i < ForeignProgram::kManyTimes; ++i) client_.own();
                break;
            case 'p': client_.own("PRIMARY"); break;
            case '0': client_.disown(); break;
            default: break;
        }
        reply(ForeignProgram::kObeyed);
        handleEvents();
    }

    void handleEvents() {
        while (const auto event = owned(xcb_poll_for_event(client_.get()))) {
            const int type = event->response_type & 0x7F;
            if (type == XCB_SELECTION_REQUEST) answer(as<xcb_selection_request_event_t>(*event));
            if (type == XCB_PROPERTY_NOTIFY) handleDeletion(as<xcb_property_notify_event_t>(*event));
        }
        xcb_flush(client_.get());
    }

    void answer(const xcb_selection_request_event_t& request) {
        if (!plan_.answers && request.target != client_.atom("TARGETS")) return;
        if (plan_.pauseBeforeAnswer.count() > 0) isReadable(-1, plan_.pauseBeforeAnswer);
        std::array<char, 32> wire = {};
        xcb_selection_notify_event_t notification = {};
        notification.response_type = XCB_SELECTION_NOTIFY;
        notification.time = request.time;
        notification.requestor = request.requestor;
        notification.selection = request.selection;
        notification.target = request.target;
        notification.property = convert(request) ? request.property : xcb_atom_t{XCB_ATOM_NONE};
        std::memcpy(wire.data(), &notification, sizeof(notification));
        xcb_send_event(client_.get(), 0, request.requestor, 0, wire.data());
    }

    bool convert(const xcb_selection_request_event_t& request) {
        if (request.target == client_.atom("TARGETS")) return plan_.listsTargets && listTargets(request);
        const auto found =
            std::ranges::find(plan_.content, client_.nameOf(request.target), &OwnerPlan::Representation::target);
        if (found == plan_.content.end()) return false;
        if (plan_.incrementSize == 0) {
            put({request.requestor, request.property}, *found, found->bytes);
            return true;
        }
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(client_.get(), request.requestor, XCB_CW_EVENT_MASK, &events);
        transfers_[{request.requestor, request.property}] = {*found};
        const auto size = static_cast<std::uint32_t>(found->bytes.size());
        xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            client_.atom("INCR"), 32, 1, &size);
        return true;
    }

    bool listTargets(const xcb_selection_request_event_t& request) {
        std::vector<xcb_atom_t> targets(plan_.unknownTargetCount);
        std::iota(targets.begin(), targets.end(), kNoAtoms);
        targets.insert(targets.end(), {client_.atom("TARGETS"), client_.atom("TIMESTAMP")});
        for (const auto& each : plan_.content) targets.push_back(client_.atom(each.target));
        if (plan_.listsNothing) targets.clear();
        xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM,
                            32, static_cast<std::uint32_t>(targets.size()), targets.data());
        return true;
    }

    void put(Destination to, const OwnerPlan::Representation& what, std::string_view bytes) {
        xcb_change_property(
            client_.get(), XCB_PROP_MODE_REPLACE, to.first, to.second,
            client_.atom(what.type.empty() ? what.target : what.type), static_cast<std::uint8_t>(what.format),
            static_cast<std::uint32_t>(bytes.size() * 8) / static_cast<std::uint32_t>(what.format), bytes.data());
    }

    void handleDeletion(const xcb_property_notify_event_t& change) {
        const Destination destination = {change.window, change.atom};
        const auto found = transfers_.find(destination);
        if (change.state != XCB_PROPERTY_DELETE || found == transfers_.end()) return;
        Transfer& transfer = found->second;
        misbehave(transfer);
        const auto increment = std::string_view(transfer.content.bytes).substr(transfer.offset, plan_.incrementSize);
        put(destination, transfer.content, increment);
        transfer.offset += increment.size();
        ++transfer.incrementCount;
        if (!increment.empty()) return;
        transfers_.erase(found);
        reply(ForeignProgram::kTransferEnded);
    }

    void misbehave(const Transfer& transfer) {
        xcb_flush(client_.get());
        if (transfer.incrementCount == plan_.stopsAfterIncrements) {
            plan_.stopsAfterIncrements = -1;
            raise(SIGSTOP);
        }
        if (transfer.incrementCount == plan_.diesAfterIncrements) raise(SIGKILL);
        if (transfer.incrementCount == plan_.copiesAgainAfterIncrements) client_.own();
        if (plan_.pauseBeforeIncrement.count() > 0) isReadable(-1, plan_.pauseBeforeIncrement);
    }

    OwnerPlan plan_;
    int commands_;
    int replies_;
    X11Client client_;
    std::map<Destination, Transfer> transfers_;
};

class StallingRequestor final : public StallingReader {
public:
    explicit StallingRequestor(SystemPasteboard& pasteboard) : requestor_(pasteboard) {}
    void ask(const std::string& target) override {
        xcb_convert_selection(requestor_.get(), requestor_.window(), requestor_.atom("CLIPBOARD"),
                              requestor_.atom(target), requestor_.atom(nextProperty()), XCB_CURRENT_TIME);
        requestor_.synchronise();
    }
    void begin(const std::string& target) override { requestor_.begin(target, nextProperty()); }

private:
    std::string nextProperty() { return "STALLED_" + std::to_string(++count_); }

    Requestor requestor_;
    int count_ = 0;
};

}  // namespace

std::unique_ptr<X11Pasteboard> openPasteboard(ReadLimits limits, const char* displayName) {
    std::string whyNot;
    auto pasteboard = X11Pasteboard::open(displayName, whyNot, limits);
    if (!pasteboard) throw std::runtime_error("no pasteboard: " + whyNot);
    return pasteboard;
}

std::unique_ptr<SystemPasteboard> openBackEnd(ReadLimits limits) {
    return openPasteboard(limits);
}

std::unique_ptr<ForeignProgram> copyElsewhere(const OwnerPlan& plan) {
    return std::make_unique<ForeignOwner>(plan);
}

std::optional<std::string> pasteElsewhere(const std::string& target, SystemPasteboard& pasteboard) {
    const std::optional<Requestor::Property> answer = Requestor(pasteboard).read(target);
    return answer ? std::optional(answer->bytes) : std::nullopt;
}

std::unique_ptr<StallingReader> stallElsewhere(SystemPasteboard& pasteboard) {
    return std::make_unique<StallingRequestor>(pasteboard);
}

const bool kTellsTheEndOfATextFromADeath = true;
const bool kKeepsCopiesInTheMomentOfAWrite = true;

const std::vector<std::string> kCopyingProgram = {"xclip", "-quiet", "-selection", "clipboard"};
const std::vector<std::string> kPastingProgram = {"xclip", "-selection", "clipboard", "-out"};

X11Client::X11Client(const char* displayName)
    : connection_(xcb_connect(displayName, nullptr)), window_(xcb_generate_id(connection_)) {
    if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("no display for the test's client");
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_,
                      xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    synchronise();
}

X11Client::~X11Client() {
    xcb_disconnect(connection_);
}

xcb_atom_t X11Client::atom(const std::string& name) {
    xcb_atom_t& known = atoms_[name];
    if (known == XCB_ATOM_NONE) {
        const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        known = owned(xcb_intern_atom_reply(connection_, cookie, nullptr))->atom;
    }
    return known;
}

std::string X11Client::nameOf(xcb_atom_t atom) {
    const auto reply = owned(xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
    if (!reply) return "";
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

xcb_window_t X11Client::owner(const std::string& selection) {
    const auto cookie = xcb_get_selection_owner(connection_, atom(selection));
    return owned(xcb_get_selection_owner_reply(connection_, cookie, nullptr))->owner;
}

void X11Client::own(const std::string& selection) {
    xcb_set_selection_owner(connection_, window_, atom(selection), XCB_CURRENT_TIME);
    synchronise();
}

void X11Client::disown() {
    xcb_set_selection_owner(connection_, XCB_WINDOW_NONE, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    synchronise();
}

std::vector<std::string> X11Client::propertiesOf(xcb_window_t window) {
    const auto reply = owned(xcb_list_properties_reply(connection_, xcb_list_properties(connection_, window), nullptr));
    std::vector<std::string> names;
    for (int i = 0; i < reply->atoms_len; ++i) names.push_back(nameOf(xcb_list_properties_atoms(reply.get())[i]));
    std::ranges::sort(names);
    return names;
}

void X11Client::synchronise() {
    owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

ForeignOwner::ForeignOwner(const OwnerPlan& plan)
    : ForeignProgram([&plan](int commands, int replies) { OwnerProgram(plan, commands, replies).run(); }) {}

std::vector<std::uint32_t> Requestor::Property::values() const {
    std::vector<std::uint32_t> result(bytes.size() / sizeof(std::uint32_t));
    std::memcpy(result.data(), bytes.data(), result.size() * sizeof(std::uint32_t));
    return result;
}

void Requestor::noteEvents() {
    while (const auto event = owned(xcb_poll_for_event(get()))) {
        const int type = event->response_type & 0x7F;
        if (type == XCB_SELECTION_NOTIFY) {
            const auto& answer = as<xcb_selection_notify_event_t>(*event);
            answer_ = {answer.property, answer.time};
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto& change = as<xcb_property_notify_event_t>(*event);
            if (change.state == XCB_PROPERTY_NEW_VALUE) ++newValueCounts_[change.atom];
        }
    }
}

std::optional<Requestor::Answer> Requestor::ask(const std::string& target, const std::string& property,
                                                xcb_timestamp_t time) {
    answer_.reset();
    xcb_convert_selection(get(), window(), atom("CLIPBOARD"), atom(target),
                          property.empty() ? xcb_atom_t{XCB_ATOM_NONE} : atom(property), time);
    xcb_flush(get());
    serveUntil(pasteboard_, [this] { return noteEvents(), answer_.has_value(); });
    return answer_;
}

std::optional<Requestor::Property> Requestor::take(const std::string& property) {
    noteEvents();
    newValueCounts_[atom(property)] = 0;
    const auto cookie =
        xcb_get_property(get(), 1, window(), atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, UINT32_MAX / 4);
    const auto reply = owned(xcb_get_property_reply(get(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
    return Property{nameOf(reply->type), reply->format,
                    std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

std::optional<Requestor::Property> Requestor::takeIncrement(const std::string& property) {
    const bool isThere = serveUntil(pasteboard_, [&] { return noteEvents(), newValueCounts_[atom(property)] > 0; });
    return isThere ? take(property) : std::nullopt;
}

std::optional<Requestor::Property> Requestor::read(const std::string& target, const std::string& property) {
    const std::optional<Answer> answer = ask(target, property);
    if (!answer || answer->property == XCB_ATOM_NONE) return std::nullopt;
    return takeAnnounced(property);
}

void Requestor::begin(const std::string& target, const std::string& property) {
    ask(target, property);
    EXPECT_EQ(take(property)->type, "INCR");
}

std::optional<Requestor::Property> Requestor::takeAnnounced(const std::string& property) {
    std::optional<Property> whole = take(property);
    return whole && whole->type == "INCR" ? takeIncrements(property) : whole;
}

Requestor::Property Requestor::takeIncrements(const std::string& property) {
    Property whole;
    while (const std::optional<Property> increment = takeIncrement(property)) {
        whole.type = increment->type;
        whole.format = increment->format;
        if (increment->bytes.empty()) return whole;
        whole.bytes += increment->bytes;
    }
    ADD_FAILURE() << "the increments do not come to their end";
    return whole;
}

std::vector<std::string> Requestor::targets() {
    const std::optional<Property> list = read("TARGETS");
    std::vector<std::string> names;
    if (!list || list->type != "ATOM" || list->format != 32) return names;
    for (const std::uint32_t each : list->values()) names.push_back(nameOf(each));
    std::ranges::sort(names);
    return names;
}

Observer::Observer() {
    owned(xcb_xfixes_query_version_reply(get(), xcb_xfixes_query_version(get(), 5, 0), nullptr));
    firstEvent_ = xcb_get_extension_data(get(), &xcb_xfixes_id)->first_event;
    xcb_xfixes_select_selection_input(get(), window(), atom("CLIPBOARD"), 7);
    synchronise();
}

std::vector<xcb_window_t> Observer::newOwners() {
    synchronise();
    std::vector<xcb_window_t> owners;
    while (const auto event = owned(xcb_poll_for_event(get()))) {
        if ((event->response_type & 0x7F) != firstEvent_) continue;
        const auto& change = as<xcb_xfixes_selection_notify_event_t>(*event);
        owners.push_back(change.owner);
        ownedSince_ = change.selection_timestamp;
    }
    return owners;
}

xcb_timestamp_t Observer::ownedSince() {
    newOwners();
    return ownedSince_;
}

}  // namespace ravlin::tests
