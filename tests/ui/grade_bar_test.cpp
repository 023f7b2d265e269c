// SPDX-License-Identifier: MIT
// What the grade bar paints, looked at pixel by pixel: each part's colour, and how much of the bar it takes.
#include "ui/grade_bar.h"

#include <map>
#include <vector>

#include <QImage>
#include <QTest>

using namespace quillon;

namespace {

constexpr int kRoom = 1000;  // a bar of so many pixels and one for its edge

struct Part {
    Grade grade;
    QRgb colour;
};
// In the order of painting.
const std::vector<Part> kParts = {
    {Grade::Good, 0xff2f9e62},        {Grade::CommonHeader, 0xff7cc5a0}, {Grade::Corrupt, 0xffd14343},
    {Grade::Unknown, 0xff8792a2},     {Grade::NoExtension, 0xffb4a1d6},  {Grade::Encrypted, 0xffe0a100},
    {Grade::AccessError, 0xffe8763a}, {Grade::InvalidName, 0xff8a5a3c},  {Grade::ZeroBytes, 0xffc9ced6},
    {Grade::TooSmall, 0xff5b7fb5},
};

using Counts = ByGrade<std::int32_t>;

// The colours of the bar's middle row from left to right, without the edge on both sides.
std::vector<QRgb> paintedRow(const Counts& counts) {
    GradeBar bar;
    bar.resize(kRoom + 1, 20);
    bar.setCounts(counts);
    const QImage image = bar.grab().toImage().convertToFormat(QImage::Format_RGB32);
    std::vector<QRgb> row;
    for (int x = 1; x < kRoom; ++x) row.push_back(image.pixel(x, 10));
    return row;
}

// The pixels of each part's own colour, one less than its width: parts meet in the middle of a pixel.
std::map<QRgb, int> pixelsOf(const Counts& counts) {
    std::map<QRgb, int> pixels;
    for (const QRgb colour : paintedRow(counts)) ++pixels[colour];
    return pixels;
}

}  // namespace

class GradeBarTest : public QObject {
    Q_OBJECT

private slots:
    void eachPartHasItsColourAndItsShare();
    void partsStandInTheOrderOfTheBoard();
    void oneFileAmongAMillionIsTwoPixelsWide();
    void everyPartFitsWhenMostAreTiny();
    void nothingCountedIsAnEmptyBar();
    void theNameReadsTheCounts();
};

void GradeBarTest::eachPartHasItsColourAndItsShare() {
    Counts counts;
    int next = 10;
    for (const Part& part : kParts) {
        counts[part.grade] = next;
        next += 20;  // 10, 30, ... 190: together the room of the bar
    }
    const auto pixels = pixelsOf(counts);
    for (const Part& part : kParts) QCOMPARE(pixels.at(part.colour), counts[part.grade] - 1);
}

void GradeBarTest::partsStandInTheOrderOfTheBoard() {
    Counts counts;
    counts.values.fill(100);
    const std::vector<QRgb> row = paintedRow(counts);
    for (std::size_t i = 0; i < kParts.size(); ++i) QCOMPARE(row[i * 100 + 50], kParts[i].colour);
}

void GradeBarTest::oneFileAmongAMillionIsTwoPixelsWide() {
    for (const Part& tiny : kParts) {
        const Part& large = tiny.grade == Grade::Unknown ? kParts.front() : kParts[3];
        Counts counts;
        counts[large.grade] = 999'999;
        counts[tiny.grade] = 1;
        const auto pixels = pixelsOf(counts);
        QCOMPARE(pixels.at(tiny.colour), 1);
        QCOMPARE(pixels.at(large.colour), kRoom - 2 - 1);
    }
}

void GradeBarTest::everyPartFitsWhenMostAreTiny() {
    Counts counts;
    counts.values.fill(1);
    counts[Grade::Good] = 1'000'000;
    const auto pixels = pixelsOf(counts);
    for (const Part& part : kParts) QCOMPARE(pixels.at(part.colour), part.grade == Grade::Good ? kRoom - 9 * 2 - 1 : 1);
}

void GradeBarTest::nothingCountedIsAnEmptyBar() {
    const GradeBar bar;
    const auto pixels = pixelsOf({});
    QCOMPARE(pixels.size(), 1U);
    QCOMPARE(pixels.begin()->first, bar.palette().color(QPalette::Base).rgb());
    QCOMPARE(bar.accessibleName(), QStringLiteral("No grades yet"));
}

void GradeBarTest::theNameReadsTheCounts() {
    GradeBar bar;
    Counts counts;
    counts[Grade::TooSmall] = 3;
    counts[Grade::CommonHeader] = 2;
    counts[Grade::Good] = 1;
    bar.setCounts(counts);
    QCOMPARE(bar.accessibleName(), QStringLiteral("Good 1, Common header 2, Small file 3"));
    counts[Grade::InvalidName] = 4;
    bar.setCounts(counts);
    QCOMPARE(bar.accessibleName(), QStringLiteral("Good 1, Common header 2, Invalid file name 4, Small file 3"));
}

QTEST_MAIN(GradeBarTest)
#include "grade_bar_test.moc"
