#include "Views/UpdateWindow.h"

#include "Views/Accessibility.h"
#include "Views/Icon.h"
#include "Views/UpdatePage.h"

#include <QVBoxLayout>

namespace ravlin {

UpdateWindow::UpdateWindow() {
    installAccessibleRoles();
    setModal(false);
    setWindowIcon(applicationIcon());
    setLayoutDirection(Qt::LeftToRight);  // its texts are English in every locale
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void UpdateWindow::setPage(UpdatePage* page) {
    if (page_ != nullptr) {
        layout()->removeWidget(page_);
        page_->hide();
        page_->deleteLater();  // a button of its own may have led here
    }
    page_ = page;
    layout()->addWidget(page_);
    page_->show();
    setObjectName(page_->content().name);
    setWindowTitle(page_->content().title);
    describe(page_->content().heading, page_->content().text);
}

void UpdateWindow::describe(const QString& heading, const QString& text) {
    setAccessibleName(heading);
    setAccessibleDescription(text);
}

void UpdateWindow::reject() {
    if (page_ == nullptr || !page_->canClose()) return;
    QDialog::reject();
    if (page_->closeAction()) page_->closeAction()();
}

void UpdateWindow::bringToFront() {
    show();
    raise();
    activateWindow();
}

}  // namespace ravlin
