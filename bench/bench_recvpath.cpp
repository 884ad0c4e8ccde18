// Receive path: 64-byte blocks through CommDevice::ProRecvResultData into both
// receive lists, beside a naive formatter (one QString::arg per byte and a
// local-time conversion per block) measured in the same run.
#include "CommDevice.h"

#include <QDateTime>
#include <QStringList>
#include <benchmark/benchmark.h>

namespace {
QByteArray block64()
{
    QByteArray b;
    for (int i = 0; i < 62; ++i)
        b.append(char(0x20 + (i * 7) % 0x60));
    b.append("\r\n");
    return b;
}

// What a straightforward implementation does: arg() per byte, a fresh local
// time per block, two list appends.
void naiveAppend(QStringList &text, QStringList &hex, const QByteArray &bytes)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    QString t, h;
    for (unsigned char b : bytes) {
        if (b >= 0x20 && b <= 0x7E)
            t += QChar(b);
        else
            t += QStringLiteral("[%1]").arg(b, 2, 16, QLatin1Char('0')).toUpper();
        h += QStringLiteral("[%1]").arg(b, 2, 16, QLatin1Char('0')).toUpper();
    }
    if (text.size() >= 200)
        text.removeFirst();
    if (hex.size() >= 200)
        hex.removeFirst();
    text.append(QStringLiteral("[%1] %2").arg(stamp, t));
    hex.append(QStringLiteral("[%1] %2").arg(stamp, h));
}
} // namespace

static void BM_NaiveFormatter(benchmark::State &state)
{
    QByteArray bytes = block64();
    QStringList text, hex;
    for (auto _ : state)
        naiveAppend(text, hex, bytes);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_NaiveFormatter);

static void BM_ProRecvResultData(benchmark::State &state)
{
    QByteArray bytes = block64();
    CommDevice device(QStringLiteral("TcpServerModule"));
    for (auto _ : state)
        device.ProRecvResultData(-1, bytes.data(), bytes.size());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ProRecvResultData);

BENCHMARK_MAIN();
