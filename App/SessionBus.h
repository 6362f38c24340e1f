#pragma once

/// The session bus before it is used: Qt and the libraries below it wait for a bus that says nothing as long as they
/// like, and again for each of their questions.
namespace ravlin::SessionBus {

/// Makes this process do without the session bus where that does not answer within two seconds. Comes before anything
/// that uses it, and while this process has one thread only.
void avoidIfSilent();

}  // namespace ravlin::SessionBus
