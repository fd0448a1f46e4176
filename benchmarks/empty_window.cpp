// What start-up, memory and idle time are held against: an empty window of the widget library, as large as
// the program's.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(420, 430);
  window.show();
  return QApplication::exec();
}
