// Runs every file of the given corpus folders (or single files) through a fuzz
// target's entry point once, without fuzzing: the regression check that the
// ordinary build and CI run.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <cstdint>
#include <cstdio>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

QStringList inputsOf(const QString& path)
{
    if (QFileInfo(path).isFile())
        return {path};
    QStringList files;
    QDirIterator it(path, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    files.sort();
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER_OR_FILE...\n", argv[0]);
        return 2;
    }
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const QStringList inputs = inputsOf(QString::fromLocal8Bit(argv[i]));
        if (inputs.isEmpty()) {
            std::fprintf(stderr, "%s holds no input\n", argv[i]);
            return 1;
        }
        for (const QString& input : inputs) {
            QFile file(input);
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(input));
                return 1;
            }
            // A copy of exactly the file's size, so that a read past the end is caught.
            const QByteArray content = file.readAll();
            std::vector<uint8_t> bytes(content.begin(), content.end());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++replayed;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return 0;
}
