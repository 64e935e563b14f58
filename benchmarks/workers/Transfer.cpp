// Whole lists and whole configurations on their way in and out.
#include <QAbstractButton>
#include <algorithm>

#include "benchmarks/Machine.h"
#include "benchmarks/workers/App.h"
#include "benchmarks/workers/Events.h"
#include "benchmarks/workers/Workers.h"

namespace bench {

namespace {

constexpr int actionSection = 0;
constexpr int importRow = 1;
constexpr int importButton = 1;
constexpr int yesButton = 1;
constexpr int exportSection = 6;

// Files on their way have other names until they are whole.
bool isExported(App& app) {
    const std::filesystem::directory_iterator files(app.device().files().exportDirectory());
    return std::any_of(begin(files), end(files),
                       [](const auto& file) { return file.path().filename().string().starts_with("VxmSettings-"); });
}

}  // namespace

Figures importHostList(const Arguments& arguments) {
    App app(arguments.at(0));
    app.openDenyList();
    app.tapRow(actionSection, importRow);
    app.clock().settle();
    app.answer(importButton);
    app.clock().settle();
    app.tapRow(0, 0);
    settleMachine();
    return {{"import", app.untilReplaced(app.device().globalRules(), [&] { app.answer(yesButton); })}};
}

Figures exportAndImportSettings(const Arguments& arguments) {
    App app(arguments.at(0));
    app.openSettings();
    app.tapRow(exportSection, 0);
    app.clock().settle();
    Figures figures;
    QAbstractButton* exportButton = app.button(QStringLiteral("Export"));
    app.clock().settle();
    settleMachine();
    figures["export"] = app.clock().until([&] { return isExported(app); }, [&] { tap(*exportButton); });
    app.clock().settle();
    app.tapRow(0, 0);
    // The last of the files that an import replaces.
    const std::filesystem::path last = app.device().files().path(store::File::guiSettings);
    settleMachine();
    figures["import"] = app.untilReplaced(last, [&] { app.answer(yesButton); });
    return figures;
}

}  // namespace bench
