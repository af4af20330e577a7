#include "app/flows/JournalFlow.h"

#include "app/flows/ErrorText.h"
#include "base/Fatal.h"
#include "base/Log.h"

#include <utility>

#include <fmt/format.h>

namespace vantro::app::flows {
namespace {

constexpr auto saveFailed = model::VantroError::Kind::projectSaveFailed;
constexpr auto openFailed = model::VantroError::Kind::projectOpenFailed;

} // namespace

/// The journal of what is in the editor, while there is one. Worker thread.
class JournalFlow::Keeper {
  public:
    explicit Keeper(std::filesystem::path directory) : m_directory(std::move(directory)) {}

    void write(const files::JournalledEdit& edit) {
        if (!m_journal)
            m_journal = files::EditJournal::begin(m_directory);
        m_journal->write(edit);
    }
    void adopt(std::shared_ptr<files::EditJournal> journal) { m_journal = std::move(journal); }
    std::shared_ptr<files::EditJournal> give() { return std::exchange(m_journal, {}); }

  private:
    std::filesystem::path m_directory;
    std::shared_ptr<files::EditJournal> m_journal;
};

JournalFlow::JournalFlow(AppState& state, ProjectFlow& projects, MainTimers& timers,
                         TaskRunner& tasks, std::filesystem::path directory)
    : m_state(state)
    , m_projects(projects)
    , m_timers(timers)
    , m_tasks(tasks)
    , m_directory(std::move(directory))
    , m_keeper(std::make_shared<Keeper>(m_directory)) {
    connect(&state.document(), &EditDocument::changed, this, &JournalFlow::documentChanged);
    projects.setDiscard([this](std::function<void()> then, std::function<void()> failed) {
        discard(std::move(then), std::move(failed));
    });
}

JournalFlow::~JournalFlow() {
    m_projects.setDiscard({});
    if (!m_isDirty)
        return;
    m_tasks.run([keeper = m_keeper, edit = unsavedEdit()]() -> TaskRunner::Continuation {
        try {
            keeper->write(edit);
        } catch (const std::exception& failure) {
            base::logWarning("The last changes are lost: {}", failure.what());
        }
        return {}; // this flow is gone by then
    });
}

files::JournalledEdit JournalFlow::unsavedEdit() const {
    auto project = m_state.document().project();
    if (!project)
        base::fatal("unsaved changes belong to a project");
    return {.project = std::move(*project), .package = m_state.projectPath()};
}

void JournalFlow::documentChanged() {
    m_isDirty = m_state.document().isModified();
    if (m_isDirty && !m_timer)
        m_timer = m_timers.repeat(interval, [this] { tick(); });
    if (!m_isDirty && m_hasJournal)
        discard({}); // saved, or the user has left it
}

void JournalFlow::tick() {
    if (m_isWriting)
        return;
    if (m_isDirty)
        write();
    else
        m_timer.reset();
}

void JournalFlow::write() {
    m_isDirty = false;
    m_isWriting = m_hasJournal = true;
    m_tasks.run([this, keeper = m_keeper, edit = unsavedEdit()]() -> TaskRunner::Continuation {
        try {
            keeper->write(edit);
            return [this] { written({}); };
        } catch (const std::exception& failure) {
            return [this, text = failureText(failure, saveFailed)] { written(text); };
        }
    });
}

void JournalFlow::written(const std::string& problem) {
    m_isWriting = false;
    if (problem.empty())
        return;
    if (m_hasJournal)
        m_isDirty = m_state.document().isModified(); // tries again
    if (!std::exchange(m_hasComplained, true))
        m_state.setError(
            fmt::format("changes that are not saved would be lost in a crash: {}", problem),
            saveFailed);
}

void JournalFlow::discard(std::function<void()> then, std::function<void()> failed) {
    m_isDirty = m_hasJournal = false;
    remove([keeper = m_keeper] { return keeper->give(); }, std::move(then), std::move(failed));
}

void JournalFlow::remove(std::function<std::shared_ptr<files::EditJournal>()> which,
                         std::function<void()> then, std::function<void()> failed) {
    m_tasks.run([this, which = std::move(which), then = std::move(then),
                 failed = std::move(failed)]() -> TaskRunner::Continuation {
        try {
            if (const auto journal = which())
                journal->remove();
            return then;
        } catch (const std::exception& failure) {
            return [this, failed, text = failureText(failure, saveFailed)] {
                m_state.setError(fmt::format("the discarded changes are still there: {}", text),
                                 saveFailed);
                if (failed)
                    failed();
            };
        }
    });
}

void JournalFlow::find() {
    m_tasks.run([this, directory = m_directory]() -> TaskRunner::Continuation {
        std::vector<Offer> found;
        std::string unreadable;
        for (auto& journal : files::EditJournal::leftBehind(directory)) {
            try {
                auto edit = journal->read();
                found.push_back({std::move(journal), std::move(edit)});
            } catch (const std::exception& failure) {
                base::logWarning("Unsaved changes are lost: {}", failure.what());
                unreadable = failure.what();
                journal->setAside();
            }
        }
        return [this, found = std::move(found), unreadable] {
            m_offers = found;
            Q_EMIT offeredChanged();
            if (!unreadable.empty())
                m_state.setError(
                    fmt::format("changes that were not saved cannot be restored: {}", unreadable),
                    openFailed);
        };
    });
}

std::string JournalFlow::offeredName() const {
    return isOffered() ? m_offers.front().edit.project.name : std::string();
}

JournalFlow::Offer JournalFlow::takeOffer() {
    auto offer = std::move(m_offers.front());
    m_offers.erase(m_offers.begin());
    Q_EMIT offeredChanged();
    return offer;
}

void JournalFlow::restore() {
    if (!isOffered())
        return;
    auto [journal, edit] = takeOffer();
    m_projects.openEdited(edit, [this, journal] {
        m_hasJournal = true;
        m_tasks.run([keeper = m_keeper, journal]() -> TaskRunner::Continuation {
            keeper->adopt(journal);
            return {};
        });
        documentChanged();
    });
}

void JournalFlow::discardOffered() {
    if (!isOffered())
        return;
    remove([journal = takeOffer().journal] { return journal; }, {}, {});
}

void JournalFlow::dismiss() {
    if (isOffered())
        takeOffer();
}

} // namespace vantro::app::flows
