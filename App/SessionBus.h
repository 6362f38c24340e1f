#pragma once

/// The session bus before it is used: Qt and the libraries below it wait as long as they like for a bus that does not
/// answer, and again with each question.
namespace ravlin::SessionBus {

/// Makes this process do without the session bus if that does not answer within two seconds. Call this before anything
/// uses the bus, and while this process has only one thread.
void avoidIfSilent();

}  // namespace ravlin::SessionBus
