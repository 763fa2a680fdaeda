#include "integration/ExportRun.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "db/Questions.h"
#include "integration/PocketOutlook.h"

namespace quillary {

namespace {

constexpr std::size_t kMostWaiting = 1024;  // items made before the store takes them

class CollectedMessages : public Questions {
  public:
    std::vector<Failure> told;

    void Tell(const Failure& failure) override { told.push_back(failure); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

}  // namespace

struct ExportRun::Shared {
    std::mutex mutex;
    std::condition_variable changed;  // anything below
    std::deque<Item> waiting;
    bool allMade = false;
    bool isStopped = false;
    bool isWriting = false;
    bool hasEnded = false;
    std::size_t tried = 0;
    std::vector<Failure> messages;
    std::vector<std::filesystem::path> files;

    template <class Change>
    void Set(Change change) {
        {
            const std::lock_guard lock(mutex);
            change();
        }
        changed.notify_all();
    }
    std::optional<Item> NextItem() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isStopped || allMade || !waiting.empty(); });
        if (isStopped || waiting.empty()) return std::nullopt;
        std::optional<Item> item = std::move(waiting.front());
        waiting.pop_front();
        return item;
    }
};

ExportRun::ExportRun(std::unique_ptr<PersonalStore> store, std::size_t count, std::function<Item(std::size_t)> makeItem)
    : m_count(count), m_makeItem(std::move(makeItem)), m_shared(std::make_shared<Shared>()) {
    // Nothing can break off a call that waits for another program, so nobody waits for the thread's end either: what it
    // needs belongs to it.
    std::thread([store = std::move(store), shared = m_shared]() mutable { Work(std::move(store), *shared); }).detach();
}

ExportRun::~ExportRun() { Stop(); }

void ExportRun::Work(std::unique_ptr<PersonalStore> store, Shared& shared) {
    CollectedMessages messages;
    std::vector<std::filesystem::path> files;
    {
        CPocketOutlook outlook(std::move(store), messages);
        shared.Set([&] { shared.isWriting = outlook.IsUsable(); });
        while (outlook.IsUsable()) {
            const auto item = shared.NextItem();
            if (!item) break;
            const auto* appointment = std::get_if<Appointment>(&*item);
            appointment ? outlook.CreateAppointment(*appointment) : outlook.CreateContact(std::get<Contact>(*item));
            shared.Set([&] { ++shared.tried; });
        }
        files = outlook.Files();
    }
    shared.Set([&] {
        shared.messages = std::move(messages.told);
        shared.files = std::move(files);
        shared.hasEnded = true;
    });
}

bool ExportRun::Advance() {
    std::size_t room = 0;
    {
        const std::lock_guard lock(m_shared->mutex);
        room = kMostWaiting - m_shared->waiting.size();
    }
    std::vector<Item> made;
    while (made.size() < room && m_made < m_count) made.push_back(m_makeItem(m_made++));
    m_shared->Set([&] {
        for (Item& item : made) m_shared->waiting.push_back(std::move(item));
        m_shared->allMade = m_made == m_count;
    });
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->hasEnded;
}

bool ExportRun::Stop(std::chrono::milliseconds patience) {
    m_shared->Set([this] { m_shared->isStopped = true; });
    std::unique_lock lock(m_shared->mutex);
    return m_shared->changed.wait_for(lock, patience, [this] { return m_shared->hasEnded; });
}

bool ExportRun::IsWriting() const {
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->isWriting;
}

std::size_t ExportRun::Tried() const {
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->tried;
}

const std::vector<Failure>& ExportRun::Messages() const { return m_shared->messages; }

const std::vector<std::filesystem::path>& ExportRun::Files() const { return m_shared->files; }

}  // namespace quillary
