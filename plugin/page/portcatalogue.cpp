#include "portcatalogue.h"

#include "kelplugin/interfacemanager.h"

#include <QComboBox>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

// One run of a name: a number when the digits fit an int, else the run's text.
struct Token
{
    bool isNumber;
    int number;
    int start;
    int length;
    // Numbers: the value. Letter runs: the first eight letters packed big-endian, which orders
    // like the text and always above any int, since every letter is above 0x40.
    quint64 key;
};

const int kPackedLetters = 8;

// Characters of the longest port name a drop-down shows in full without growing.
const int kTypicalNameLength = 12;

quint64 packLetters(const QChar *letters, int length)
{
    quint64 key = 0;
    for (int k = 0; k < kPackedLetters; ++k)
        key = (key << 8) | (k < length ? letters[k].unicode() : 0u);
    return key;
}

// Every name's tokens, computed once per sort: the comparison then only reads them.
class TokenTable
{
public:
    explicit TokenTable(const QStringList &names)
    {
        m_names.reserve(names.size());
        m_first.reserve(names.size() + 1);
        m_tokens.reserve(std::size_t(names.size()) * 2);
        for (const QString &name : names) {
            m_names.push_back(name.constData());
            m_first.push_back(int(m_tokens.size()));
            tokenise(name);
        }
        m_first.push_back(int(m_tokens.size()));
    }

    // Runs that hold digits but no int make the comparison inconsistent (a cycle is possible
    // between such a run and numbers), so the caller must sort with an algorithm that tolerates it.
    bool hasDigitText() const { return m_digitText; }

    bool less(int a, int b) const { return compare(a, b) < 0; }

    // The same order as compare() for tables without digit text, on integers alone but for
    // letter runs longer than the packed part.
    bool lessFast(int a, int b) const
    {
        const Token *ta = m_tokens.data() + m_first[a];
        const Token *tb = m_tokens.data() + m_first[b];
        const int countA = m_first[a + 1] - m_first[a];
        const int countB = m_first[b + 1] - m_first[b];
        const int shared = std::min(countA, countB);
        for (int i = 0; i < shared; ++i) {
            if (ta[i].key != tb[i].key)
                return ta[i].key < tb[i].key;
            if (!ta[i].isNumber
                && (ta[i].length > kPackedLetters || tb[i].length > kPackedLetters)) {
                const int c = QStringView(m_names[a] + ta[i].start, ta[i].length)
                                  .compare(QStringView(m_names[b] + tb[i].start, tb[i].length),
                                      Qt::CaseSensitive);
                if (c != 0)
                    return c < 0;
            }
        }
        return countA < countB;
    }

    int compare(int a, int b) const
    {
        const int countA = m_first[a + 1] - m_first[a];
        const int countB = m_first[b + 1] - m_first[b];
        const Token *ta = m_tokens.data() + m_first[a];
        const Token *tb = m_tokens.data() + m_first[b];
        const int shared = std::min(countA, countB);
        for (int i = 0; i < shared; ++i) {
            const int c = compareTokens(m_names[a], ta[i], m_names[b], tb[i]);
            if (c != 0)
                return c;
        }
        return countA < countB ? -1 : (countA > countB ? 1 : 0);
    }

private:
    static bool isAsciiLetter(ushort c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

    // The same runs as QRegExp("([A-Za-z]+|\\d+)"), whose \d is QChar::isDigit().
    void tokenise(const QString &name)
    {
        const QChar *d = name.constData();
        const int n = name.size();
        int i = 0;
        while (i < n) {
            const ushort c = d[i].unicode();
            int j = i + 1;
            if (isAsciiLetter(c)) {
                while (j < n && isAsciiLetter(d[j].unicode()))
                    ++j;
                m_tokens.push_back({false, 0, i, j - i, packLetters(d + i, j - i)});
            } else if (d[i].isDigit()) {
                while (j < n && d[j].isDigit())
                    ++j;
                bool ok = false;
                const int value = toInt(name, i, j - i, &ok);
                m_tokens.push_back({ok, ok ? value : 0, i, j - i, ok ? quint64(value) : 0u});
                if (!ok)
                    m_digitText = true;
            }
            i = j;
        }
    }

    // Base-10 conversion as QString::toInt does it; plain ASCII runs skip the locale machinery.
    static int toInt(const QString &name, int start, int length, bool *ok)
    {
        const QChar *d = name.constData() + start;
        qint64 value = 0;
        for (int k = 0; k < length; ++k) {
            const ushort c = d[k].unicode();
            if (c < '0' || c > '9')
                return name.midRef(start, length).toInt(ok, 10);
            value = value * 10 + (c - '0');
            if (value > std::numeric_limits<int>::max()) {
                *ok = false;
                return 0;
            }
        }
        *ok = true;
        return int(value);
    }

    static int compareTokens(const QChar *nameA, const Token &a, const QChar *nameB, const Token &b)
    {
        if (a.isNumber && b.isNumber)
            return a.number < b.number ? -1 : (a.number > b.number ? 1 : 0);
        // A number's decimal text starts with a digit, which sorts before any letter.
        if (a.isNumber && isAsciiLetter(nameB[b.start].unicode()))
            return -1;
        if (b.isNumber && isAsciiLetter(nameA[a.start].unicode()))
            return 1;
        const QString numberA = a.isNumber ? QString::number(a.number) : QString();
        const QString numberB = b.isNumber ? QString::number(b.number) : QString();
        const QStringView textA
            = a.isNumber ? QStringView(numberA) : QStringView(nameA + a.start, a.length);
        const QStringView textB
            = b.isNumber ? QStringView(numberB) : QStringView(nameB + b.start, b.length);
        return textA.compare(textB, Qt::CaseSensitive);
    }

    std::vector<const QChar *> m_names;
    std::vector<int> m_first;
    std::vector<Token> m_tokens;
    bool m_digitText = false;
};

// Bottom-up merge sort: every loop is bounded by the ranges alone, so it stays within the
// array and yields a permutation even when the comparison contradicts itself.
template<typename Less> void mergeSort(std::vector<int> &items, Less less)
{
    const std::size_t n = items.size();
    std::vector<int> buffer(n);
    for (std::size_t width = 1; width < n; width *= 2) {
        for (std::size_t lo = 0; lo < n; lo += 2 * width) {
            const std::size_t mid = std::min(lo + width, n);
            const std::size_t hi = std::min(lo + 2 * width, n);
            std::size_t i = lo;
            std::size_t j = mid;
            std::size_t out = lo;
            while (i < mid && j < hi)
                buffer[out++] = less(items[j], items[i]) ? items[j++] : items[i++];
            while (i < mid)
                buffer[out++] = items[i++];
            while (j < hi)
                buffer[out++] = items[j++];
        }
        items.swap(buffer);
    }
}

} // namespace

QStringList PortCatalogue::analogInputs()
{
    return ports(QStringLiteral("AI"));
}

QStringList PortCatalogue::analogOutputs()
{
    return ports(QStringLiteral("AO"));
}

QStringList PortCatalogue::digitalInputs()
{
    return ports(QStringLiteral("DI"));
}

QStringList PortCatalogue::digitalOutputs()
{
    return ports(QStringLiteral("DO"));
}

QStringList PortCatalogue::groupInputs()
{
    return ports(QStringLiteral("GI"));
}

QStringList PortCatalogue::groupOutputs()
{
    return ports(QStringLiteral("GO"));
}

QStringList PortCatalogue::ports(const QString &type)
{
    return sorted(kelplugin::kelPluginInterface().getIOByType(type));
}

QStringList PortCatalogue::sorted(const QStringList &names)
{
    if (names.size() < 2)
        return names;
    const TokenTable table(names);
    std::vector<int> order(std::size_t(names.size()));
    for (int i = 0; i < names.size(); ++i)
        order[std::size_t(i)] = i;
    const auto less = [&table](int a, int b) { return table.less(a, b); };
    // Without digit runs beyond int the comparison is a strict weak ordering and introsort is
    // safe; with them, std::sort could run past the array, so merge instead.
    if (table.hasDigitText())
        mergeSort(order, less);
    else
        std::sort(
            order.begin(), order.end(), [&table](int a, int b) { return table.lessFast(a, b); });
    QStringList result;
    result.reserve(names.size());
    for (const int index : order)
        result.append(names.at(index));
    return result;
}

bool PortCatalogue::lessThan(const QString &a, const QString &b)
{
    const TokenTable table(QStringList {a, b});
    return table.less(0, 1);
}

void PortCatalogue::fitDropDown(QComboBox *dropDown)
{
    dropDown->setMinimumContentsLength(kTypicalNameLength);
}

void PortCatalogue::selectPort(QComboBox *dropDown, const QStringList &items, const QString &name)
{
    const int index = items.indexOf(name);
    if (index >= 0)
        dropDown->setCurrentIndex(index);
}
