#include "portcatalogue.h"

#include "kelplugin/interfacemanager.h"

#include <QComboBox>

#include <algorithm>
#include <array>
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

// A name as the radix sort sees it: an order-preserving key made of its first four tokens,
// one 32-bit slot each (0 for no token, so a shorter name sorts first; a number as its value
// plus one; a letter run above every number, as its first five letters in 6-bit codes and a
// bit for a run that has more). A slot that cuts a letter run short ends the key and the slots
// after it stay 0, so names whose keys differ are in the order of their keys, and equal keys
// are ordered by the full comparison when the key left part of either name out.
struct RadixEntry
{
    static const int kSlots = 4;
    static const int kLetterCodes = 5;
    quint32 slot[kSlots];
    int index;
    bool partial;

    bool sameKey(const RadixEntry &other) const
    {
        return std::equal(slot, slot + kSlots, other.slot);
    }
};

// The sort's working memory, kept between sorts on the same thread. The I/O page sorts six
// lists on every show; allocated afresh, the buffers of a large list were fresh pages that the
// kernel had to fault in and zero each time, a quarter of the sort at 8,192 names.
struct SortScratch
{
    // Lists up to this size keep their buffers (about 1 MiB); larger ones give them back.
    static const int kKeptNames = 16384;

    std::vector<const QChar *> names;
    std::vector<int> first;
    std::vector<Token> tokens;
    std::vector<RadixEntry> entries;
    std::vector<RadixEntry> buffer;
    std::vector<int> order;

    void releaseIfLarge(int nameCount)
    {
        if (nameCount > kKeptNames)
            *this = SortScratch();
    }
};

// Every name's tokens, computed once per sort: the comparison then only reads them.
class TokenTable
{
public:
    TokenTable(const QStringList &names, SortScratch &scratch)
        : m_names(scratch.names), m_first(scratch.first), m_tokens(scratch.tokens)
    {
        m_names.clear();
        m_first.clear();
        m_tokens.clear();
        m_names.reserve(std::size_t(names.size()));
        m_first.reserve(std::size_t(names.size()) + 1);
        // Port names have two to four runs; capacity that is never written costs nothing.
        m_tokens.reserve(std::size_t(names.size()) * 4);
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

    RadixEntry entry(int name) const
    {
        RadixEntry e {};
        e.index = name;
        const int count = m_first[name + 1] - m_first[name];
        const Token *tokens = m_tokens.data() + m_first[name];
        e.partial = count > RadixEntry::kSlots;
        for (int i = 0; i < std::min(count, int(RadixEntry::kSlots)); ++i) {
            const Token &t = tokens[i];
            if (t.isNumber) {
                e.slot[i] = quint32(t.number) + 1u;
                continue;
            }
            quint32 code = 0;
            for (int k = 0; k < RadixEntry::kLetterCodes; ++k)
                code = (code << 6) | (k < t.length ? letterCode(m_names[name][t.start + k]) : 0u);
            const bool cut = t.length > RadixEntry::kLetterCodes;
            // A run cut short sorts after the run that is exactly its first five letters.
            e.slot[i] = 0x80000001u + 2 * code + (cut ? 1 : 0);
            if (cut) {
                e.partial = true;
                break;
            }
        }
        return e;
    }

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

    // A to Z as 1 to 26 and a to z as 27 to 52: the order of the characters' codes.
    static quint32 letterCode(QChar c)
    {
        const ushort u = c.unicode();
        return u <= 'Z' ? quint32(u - 'A' + 1) : quint32(u - 'a' + 27);
    }

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

    std::vector<const QChar *> &m_names;
    std::vector<int> &m_first;
    std::vector<Token> &m_tokens;
    bool m_digitText = false;
};

// Below this many names comparing is cheaper than the radix sort's counting passes.
const std::size_t kRadixMinimum = 256;

// Sorts the entries by their keys, least significant byte first, one counting pass per byte.
// Only bytes that differ between keys get a pass; for port names, which share their prefix and
// have small numbers, that is a few of the sixteen. Linear in the number of names, where
// comparing names costs more the more of them share a prefix.
void radixSort(std::vector<RadixEntry> &entries, std::vector<RadixEntry> &buffer)
{
    const std::size_t n = entries.size();
    quint32 differs[RadixEntry::kSlots] = {};
    const RadixEntry &front = entries.front();
    for (const RadixEntry &e : entries) {
        for (int slot = 0; slot < RadixEntry::kSlots; ++slot)
            differs[slot] |= e.slot[slot] ^ front.slot[slot];
    }
    buffer.resize(n);
    std::array<quint32, 256> count;
    for (int slot = RadixEntry::kSlots - 1; slot >= 0; --slot) {
        for (int shift = 0; shift < 32; shift += 8) {
            if (((differs[slot] >> shift) & 0xffu) == 0)
                continue;
            count.fill(0);
            for (const RadixEntry &e : entries)
                ++count[(e.slot[slot] >> shift) & 0xffu];
            quint32 position = 0;
            for (quint32 &c : count) {
                const quint32 here = c;
                c = position;
                position += here;
            }
            for (const RadixEntry &e : entries)
                buffer[count[(e.slot[slot] >> shift) & 0xffu]++] = e;
            entries.swap(buffer);
        }
    }
}

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

// The names with position k holding names[order[k]]; order is used up. The copy takes its
// references in the list's own order and the cycles below only swap string pointers, so no
// name's data is touched in sorted, that is random, order: at 8,192 names that alone cost a
// tenth of the sort in cache misses.
QStringList permuted(const QStringList &names, std::vector<int> &order)
{
    QStringList result = names;
    result.detach();
    const int n = int(order.size());
    for (int k = 0; k < n; ++k) {
        if (order[std::size_t(k)] < 0 || order[std::size_t(k)] == k)
            continue;
        QString held = std::move(result[k]);
        int j = k;
        for (;;) {
            const int from = order[std::size_t(j)];
            order[std::size_t(j)] = -1;
            if (from == k) {
                result[j] = std::move(held);
                break;
            }
            result[j] = std::move(result[from]);
            j = from;
        }
    }
    return result;
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
    thread_local SortScratch scratch;
    const TokenTable table(names, scratch);
    std::vector<int> &order = scratch.order;
    order.resize(std::size_t(names.size()));
    // Without digit runs beyond int the comparison is a strict weak ordering and introsort is
    // safe; with them, std::sort could run past the array, so merge instead.
    if (table.hasDigitText()) {
        for (int i = 0; i < names.size(); ++i)
            order[std::size_t(i)] = i;
        mergeSort(order, [&table](int a, int b) { return table.less(a, b); });
    } else {
        std::vector<RadixEntry> &entries = scratch.entries;
        entries.clear();
        entries.reserve(std::size_t(names.size()));
        for (int i = 0; i < names.size(); ++i)
            entries.push_back(table.entry(i));
        // Exactly lessFast: keys that differ decide, equal keys that left something out go to
        // the full comparison.
        const auto less = [&table](const RadixEntry &a, const RadixEntry &b) {
            for (int i = 0; i < RadixEntry::kSlots; ++i) {
                if (a.slot[i] != b.slot[i])
                    return a.slot[i] < b.slot[i];
            }
            return (a.partial || b.partial) && table.lessFast(a.index, b.index);
        };
        if (entries.size() < kRadixMinimum) {
            std::sort(entries.begin(), entries.end(), less);
        } else {
            radixSort(entries, scratch.buffer);
            for (std::size_t first = 0; first < entries.size();) {
                std::size_t last = first + 1;
                bool partial = entries[first].partial;
                for (; last < entries.size() && entries[last].sameKey(entries[first]); ++last)
                    partial = partial || entries[last].partial;
                if (partial && last - first > 1)
                    std::sort(entries.begin() + std::ptrdiff_t(first),
                        entries.begin() + std::ptrdiff_t(last), less);
                first = last;
            }
        }
        for (std::size_t k = 0; k < entries.size(); ++k)
            order[k] = entries[k].index;
    }
    QStringList result = permuted(names, order);
    scratch.releaseIfLarge(names.size());
    return result;
}

bool PortCatalogue::lessThan(const QString &a, const QString &b)
{
    SortScratch scratch;
    const TokenTable table(QStringList {a, b}, scratch);
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
