// The least that a program with a window can be: what starting the app is compared with.
#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

#include "benchmarks/FirstFrame.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    QApplication application(argc, argv);
    const bench::FirstFrame firstFrame("QLabel", argv[1]);
    QWidget window;
    QVBoxLayout layout(&window);
    layout.addWidget(new QLabel(QStringLiteral("Vexmor")));
    window.resize(320, 548);
    window.show();
    return QApplication::exec();
}
