#include <QApplication>
#include <QWidget>

/// The least that a program with a window can be: what the start of the workbench is compared with.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(1280, 900);
    window.show();
    return QApplication::exec();
}
