// Memory for whole files in large pages, which many systems give only on request: taking a new page for every 4 KB
// costs more time than reading the file into it.
#pragma once

namespace quillary {

/// Makes every later Image live in large pages. Called once, when a program starts.
void UseLargePages();

}  // namespace quillary
