#include "datastore/Conn.h"

#include <QApplication>
#include <QMessageBox>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("grainmill"));
    QString error;
    auto conn = gm::Conn::open(gm::Conn::defaultLocation(), &error);
    if (!conn) {
        QMessageBox::critical(nullptr, QStringLiteral("grainmill"), error);
        return 1;
    }
    return 0;
}
