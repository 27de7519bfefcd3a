#pragma once
// The one error type of the component. Everything inside the engine, the reports and the
// database layer raises `Error`; the service methods and the command line turn it into what
// the host sees (a dialog, a message box, an exit code) and never let it escape further.

#include <exception>
#include <string>

namespace qr {

/// Error numbers the reports and the host rely on (the classic runtime's numbers, plus the
/// component's own 999).
namespace errc {
inline constexpr int kInvalidCall = 5;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kOverflow = 6;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kComponent = 999;
} // namespace errc

/// An error with a number, a source and a description, as the host expects to see it.
class Error : public std::exception {
  public:
    Error(int number, std::string source, std::string description);

    int number() const noexcept { return m_number; }
    const std::string& source() const noexcept { return m_source; }
    const std::string& description() const noexcept { return m_description; }
    const char* what() const noexcept override { return m_description.c_str(); }

    /// The runtime errors, with the classic descriptions ("Type mismatch", "Overflow",
    /// "Invalid use of Null", "Object variable or With block variable not set",
    /// "Subscript out of range"). The source defaults to the component's project name.
    static Error typeMismatch(std::string source = kDefaultSource);
    static Error overflow(std::string source = kDefaultSource);
    static Error invalidUseOfNull(std::string source = kDefaultSource);
    static Error objectNotSet(std::string source = kDefaultSource);
    static Error subscriptOutOfRange(std::string source = kDefaultSource);
    /// "Invalid procedure call or argument" (5): an argument outside what a call accepts,
    /// such as a calendar date that does not exist.
    static Error invalidCall(std::string source = kDefaultSource);
    /// The component's own condition: number 999 with a fixed description.
    static Error component(std::string source, std::string description);

    static constexpr const char* kDefaultSource = "PrintReports";

  private:
    int m_number;
    std::string m_source;
    std::string m_description;
};

} // namespace qr
