#include "Views/MenuView.h"

#include "App/UpdaterController.h"
#include "Engine/PasteboardService.h"

namespace ravlin {

MenuView::MenuView(UpdaterController& updater, QWidget* parent) : QWidget(parent), updater_(updater) {}

void MenuView::apply(TextTransform transform) {
    PasteboardService::transformClipboard(transform);
}

}  // namespace ravlin
