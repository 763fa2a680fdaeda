#include "app/DocListScanner.h"

#include <QCoreApplication>
#include <QEvent>
#include <chrono>
#include <utility>

namespace quillary {

namespace {

using Clock = std::chrono::steady_clock;

// The first rows show at once; later ones come less often, as each batch sorts the list again.
constexpr std::chrono::milliseconds kFirstBatchAfter{25};
constexpr std::chrono::milliseconds kBatchEvery{150};

const auto kBatchEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
const auto kDoneEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

template <class Value>
struct ValueEvent : QEvent {
    ValueEvent(Type type, Value moved) : QEvent(type), value(std::move(moved)) {}
    Value value;
};
using BatchEvent = ValueEvent<std::vector<DocListRow>>;
using DoneEvent = ValueEvent<CDocListScanner::Result>;

/// What the thread does with what it finds: rows in batches, sent by the clock.
class BatchSender : public ScanReceiver {
  public:
    BatchSender(QObject& target, const std::atomic<bool>& stop, const Path& mainFolder)
        : m_target(target), m_stop(stop), m_maker(mainFolder) {}

    void Found(FoundDatabase database) override { m_batch.push_back(m_maker.Make(database)); }
    void Unreadable(const Path& folder) override { m_result.unreadable.push_back(folder); }
    bool GoOn() override {
        if (!m_batch.empty() && Clock::now() >= m_due) Send();
        return !m_stop;
    }
    void End() {
        if (!m_batch.empty()) Send();
        QCoreApplication::postEvent(&m_target, new DoneEvent(kDoneEvent, std::move(m_result)));
    }

  private:
    void Send() {
        QCoreApplication::postEvent(&m_target, new BatchEvent(kBatchEvent, std::exchange(m_batch, {})));
        m_due = Clock::now() + kBatchEvery;
    }

    QObject& m_target;
    const std::atomic<bool>& m_stop;
    DocListRowMaker m_maker;
    std::vector<DocListRow> m_batch;
    CDocListScanner::Result m_result;
    Clock::time_point m_due = Clock::now() + kFirstBatchAfter;
};

}  // namespace

CDocListScanner::CDocListScanner(FileAccess& files, Found found, Done done)
    : m_files(files), m_found(std::move(found)), m_done(std::move(done)) {}

CDocListScanner::~CDocListScanner() { Stop(); }

void CDocListScanner::Start(const Path& mainFolder, std::vector<Path> roots) {
    Stop();
    m_thread = std::thread([this, mainFolder, roots = std::move(roots)] {
        BatchSender sender(*this, m_stop, mainFolder);
        ScanFolders(roots, m_files, sender);
        sender.End();
    });
}

void CDocListScanner::Stop() {
    if (!m_thread.joinable()) return;
    m_stop = true;
    m_thread.join();
    m_stop = false;
    QCoreApplication::removePostedEvents(this, kBatchEvent);
    QCoreApplication::removePostedEvents(this, kDoneEvent);
}

void CDocListScanner::customEvent(QEvent* event) {
    if (event->type() == kBatchEvent) {
        m_found(std::move(static_cast<BatchEvent*>(event)->value));
    } else if (event->type() == kDoneEvent) {
        m_thread.join();  // it has nothing left to do
        m_done(std::move(static_cast<DoneEvent*>(event)->value));
    }
}

}  // namespace quillary
