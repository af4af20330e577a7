#include "export/ExportPump.h"

#include "base/SerialQueue.h"

#include <exception>

namespace vantro {

void runPump(const std::string& label, const std::function<void(ProgressMailbox&)>& pump,
             const ExportProgress& progress) {
    ProgressMailbox mailbox;
    std::exception_ptr failure;
    {
        SerialQueue queue(label);
        queue.async([&] {
            try {
                pump(mailbox);
            } catch (...) {
                failure = std::current_exception();
            }
            mailbox.close();
        });
        mailbox.deliver(progress);
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace vantro
