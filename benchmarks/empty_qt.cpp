// The floor for every Qt Widgets program, to compare Ravlin with: does nothing and says "ready" when it has nothing
// more to do. With an argument it shows an empty window as large as the panel, and says so once that has been drawn.

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

void sayReady() {
    std::puts("ready");
    std::fflush(stdout);
}

class EmptyWindow final : public QWidget {
protected:
    void paintEvent(QPaintEvent* /*event*/) override { QTimer::singleShot(0, this, &sayReady); }
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    EmptyWindow window;
    if (argc > 1) {
        window.resize(340, 560);
        window.show();
    } else {
        QTimer::singleShot(0, &sayReady);
    }
    return QApplication::exec();
}
