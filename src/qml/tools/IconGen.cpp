// IconGen: renders the page's images from their SVG sources at build time.
//
//   IconGen <manifest> <svg dir> <out dir> <qrc file>
//
// Every manifest line names one PNG, its SVG source, its size in pixels and
// optional colour substitutions (from=to) that turn the normal drawing into
// its click or disable variant. The tool writes the PNGs into <out dir> and a
// resource file that lists them under the prefix "/Images".
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>
#include <QSvgRenderer>
#include <QTextStream>
#include <cstdio>

namespace {

struct IconEntry {
    QString file;
    QString source;
    QSize size;
    QList<QPair<QString, QString>> colours;
};

bool parseLine(const QString &line, IconEntry &entry, QString &error)
{
    const QStringList parts = line.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (parts.size() < 4) {
        error = QStringLiteral("expected <file> <svg> <width> <height> [from=to ...]");
        return false;
    }
    bool okW = false, okH = false;
    entry.file = parts[0];
    entry.source = parts[1];
    entry.size = QSize(parts[2].toInt(&okW), parts[3].toInt(&okH));
    if (!okW || !okH || entry.size.isEmpty()) {
        error = QStringLiteral("bad size");
        return false;
    }
    for (int i = 4; i < parts.size(); ++i) {
        const QStringList pair = parts[i].split(QLatin1Char('='));
        if (pair.size() != 2) {
            error = QStringLiteral("bad colour pair ") + parts[i];
            return false;
        }
        entry.colours.append({pair[0], pair[1]});
    }
    return true;
}

bool render(const IconEntry &entry, const QDir &svgDir, const QDir &outDir, QString &error)
{
    QFile source(svgDir.filePath(entry.source));
    if (!source.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("cannot read ") + source.fileName();
        return false;
    }
    QString svg = QString::fromUtf8(source.readAll());
    for (const auto &colour : entry.colours)
        svg.replace(colour.first, colour.second, Qt::CaseInsensitive);

    QSvgRenderer renderer(svg.toUtf8());
    if (!renderer.isValid()) {
        error = QStringLiteral("invalid SVG ") + entry.source;
        return false;
    }
    QImage image(entry.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(entry.size)));
    painter.end();
    if (!image.save(outDir.filePath(entry.file), "PNG")) {
        error = QStringLiteral("cannot write ") + entry.file;
        return false;
    }
    return true;
}

bool writeQrc(const QString &path, const QDir &outDir, const QStringList &files)
{
    QSaveFile qrc(path);
    if (!qrc.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream out(&qrc);
    out << "<RCC>\n    <qresource prefix=\"/Images\">\n";
    const QDir qrcDir = QFileInfo(path).absoluteDir();
    for (const QString &file : files)
        out << "        <file alias=\"" << file << "\">" << qrcDir.relativeFilePath(outDir.filePath(file))
            << "</file>\n";
    out << "    </qresource>\n</RCC>\n";
    out.flush();
    return qrc.commit();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 5) {
        std::fprintf(stderr, "usage: IconGen <manifest> <svg dir> <out dir> <qrc file>\n");
        return 2;
    }
    QFile manifest(args[1]);
    if (!manifest.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "IconGen: cannot read %s\n", qPrintable(args[1]));
        return 1;
    }
    const QDir svgDir(args[2]);
    QDir outDir(args[3]);
    if (!outDir.exists() && !QDir().mkpath(args[3])) {
        std::fprintf(stderr, "IconGen: cannot create %s\n", qPrintable(args[3]));
        return 1;
    }

    QStringList files;
    int lineNumber = 0;
    while (!manifest.atEnd()) {
        const QString line = QString::fromUtf8(manifest.readLine()).trimmed();
        ++lineNumber;
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        IconEntry entry;
        QString error;
        if (!parseLine(line, entry, error) || !render(entry, svgDir, outDir, error)) {
            std::fprintf(stderr, "%s:%d: %s\n", qPrintable(args[1]), lineNumber, qPrintable(error));
            return 1;
        }
        files.append(entry.file);
    }
    if (!writeQrc(args[4], outDir, files)) {
        std::fprintf(stderr, "IconGen: cannot write %s\n", qPrintable(args[4]));
        return 1;
    }
    return 0;
}
