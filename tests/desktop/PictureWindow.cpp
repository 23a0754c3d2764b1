// Shows a picture at its own size at a place of the screen, with nothing around it: orvesa-PictureWindow FILE X Y

#include <QApplication>
#include <QLabel>
#include <QPixmap>

int main(int argc, char *argv[])
{
    // Device pixels, whatever the desktop's density.
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QPixmap picture(arguments.value(1));
    if (arguments.size() != 4 || picture.isNull()) {
        return 2;
    }
    QLabel window;
    window.setTextFormat(Qt::PlainText);
    window.setWindowFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    window.setPixmap(picture);
    window.setGeometry(arguments.value(2).toInt(), arguments.value(3).toInt(), picture.width(), picture.height());
    window.show();
    return QApplication::exec();
}
