#include "ui/StepLog.h"

#include <QLoggingCategory>
#include <QString>

namespace quillary {

namespace {

Q_LOGGING_CATEGORY(steps, "quillary.steps", QtWarningMsg)

}  // namespace

void LogStep(const QString& step) { qCDebug(steps).noquote() << step; }

}  // namespace quillary
