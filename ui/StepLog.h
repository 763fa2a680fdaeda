// The steps of start-up and hand-over, written to the log for whoever asks with QT_LOGGING_RULES="quillary.steps=true".
#pragma once

class QString;

namespace quillary {

void LogStep(const QString& step);

}  // namespace quillary
