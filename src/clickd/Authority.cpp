#include "clickd/Authority.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <utility>

namespace vantro::clickd {
namespace {

constexpr auto interface = "org.freedesktop.PolicyKit1.Authority";
constexpr auto action = "com.vantro.app.watch-clicks";
constexpr std::uint32_t mayAskTheUser = 1;
// Somebody has to find a password; then again, a question must not stay open for ever.
constexpr std::chrono::minutes longestQuestion(10);

using Subject = sdbus::Struct<std::string, std::map<std::string, sdbus::Variant>>;
using Details = std::map<std::string, std::string>;
using Decision = sdbus::Struct<bool, bool, Details>;

} // namespace

Authority::Authority(sdbus::IConnection& bus)
    : m_polkit(sdbus::createProxy(bus, "org.freedesktop.PolicyKit1",
                                  "/org/freedesktop/PolicyKit1/Authority")) {}

Authority::~Authority() {
    if (m_question.empty())
        return;
    try {
        m_polkit->callMethod("CancelCheckAuthorization")
            .onInterface(interface)
            .withArguments(m_question)
            .dontExpectReply();
    } catch (const sdbus::Error&) { // NOLINT(bugprone-empty-catch): polkit is gone, and with it
    } // the question
}

void Authority::ask(const std::string& caller, Answer answer) {
    m_question = "watch" + caller; // a caller asks one thing at a time
    const Subject subject("system-bus-name", {{"name", sdbus::Variant(caller)}});
    m_polkit->callMethodAsync("CheckAuthorization")
        .onInterface(interface)
        .withTimeout(longestQuestion)
        .withArguments(subject, std::string(action), Details(), mayAskTheUser, m_question)
        .uponReplyInvoke([this, answer = std::move(answer)](const sdbus::Error* error,
                                                            const Decision& decision) {
            m_question.clear();
            if (error != nullptr)
                answer("polkit does not answer: " + error->getMessage());
            else
                answer(std::get<0>(decision) ? "" : "the user has not allowed it");
        });
}

} // namespace vantro::clickd
