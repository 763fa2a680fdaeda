#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/RecordPrinter.h"
#include "cli/Session.h"

namespace quillary {

namespace {

TableFormat FormatNamed(std::string_view name) {
    if (name == "tsv") return TableFormat::Tsv;
    if (name == "json") return TableFormat::Json;
    return name == "jsonl" ? TableFormat::JsonLines : TableFormat::Csv;
}

}  // namespace

ExitStatus RunList(Session& session, const Arguments& arguments) {
    struct Choice {
        std::string_view option;
        TableTexts texts;
    };
    constexpr Choice kChoices[] = {
        {"--stored", TableTexts::Stored}, {"--iso", TableTexts::Iso}, {"--cells", TableTexts::Cells}};
    TableTexts texts = TableTexts::Display;
    for (const Choice& choice : kChoices) {
        if (!arguments.Has(choice.option)) continue;
        if (texts != TableTexts::Display) return session.WrongUsage("--stored, --iso and --cells exclude one another.");
        texts = choice.texts;
    }

    CQuillaryDoc doc(session.Files(), session.Page());
    if (!session.Open(doc, arguments.words[0], OpenMode::Read)) return ExitStatus::Refused;
    const std::string records = arguments.Value("--records").value_or("shown");
    const std::size_t shown = records == "hidden" ? 0 : doc.Shown().size();
    const std::size_t hidden = records == "shown" ? 0 : doc.Hidden().size();

    // On a terminal the records themselves are to be seen, not the progress between them.
    Progress progress("Listing", shown + hidden, session.ShowsProgress() && !IsTerminal(StandardStream::Output));
    Output& output = session.Out();
    const TableFormat format = FormatNamed(arguments.Value("--format").value_or("csv"));
    if (format == TableFormat::Json || format == TableFormat::JsonLines) output.HoldsJson();
    RecordPrinter printer(doc, format, texts, output);
    printer.Begin();
    for (std::size_t i = 0; i < shown + hidden; ++i) {
        printer.Print(i < shown ? doc.Shown()[i] : doc.Hidden()[i - shown]);
        if (!output.Drain()) return ExitStatus::Done;  // nobody reads, or Finish says why
        progress.At(i);
    }
    printer.End();
    return ExitStatus::Done;
}

}  // namespace quillary
