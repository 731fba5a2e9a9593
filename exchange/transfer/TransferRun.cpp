#include "TransferRun.h"

#include "exchange/common/ConsumerAccess.h"

#include <cmath>
#include <limits>
#include <utility>

namespace meridyn {

TransferRun::TransferRun(KelProvider& from, KelConsumer& to, KelFormatFamilies families, KelTransfer::Progress ask,
                         unsigned64 chunkValues, KelLossReport& report)
    : source(from),
      target(to),
      ledger(ledgerOf(from)),
      chunkSize(chunkValues),
      _families(families),
      _ask(std::move(ask)),
      _report(report)
{}

bool TransferRun::carries(KelFormatFamily family, const std::string& item)
{
    if (!takes(family))
        note(family, KelLossReason::NotCarried, item, "not carried by the format");
    return takes(family);
}

bool TransferRun::carries(KelFormatFamily family, const KelZoneDescription& zone)
{
    if (!takes(family))
        note(family, KelLossReason::NotCarried, zoneLabel(zone), "not carried by the format", zone.id);
    return takes(family);
}

void TransferRun::note(KelFormatFamily family, KelLossReason reason, const std::string& item, const std::string& text,
                       std::optional<int> zone)
{
    KelLoss loss;
    loss.family = family;
    loss.reason = reason;
    loss.item = item;
    loss.text = text;
    loss.zone = zone;
    if (level)
        loss.levels = {*level};
    _report.add(loss);
}

void TransferRun::refused(KelFormatFamily family, const std::string& item)
{
    note(family, KelLossReason::Refused, item, "refused by the writer");
}

void TransferRun::settle(KelFormatFamily family, const std::string& item)
{
    // They are taken out of the store: one that stays there cannot be told from one that comes later.
    for (const std::string& error : target.getErrors(false, true))
        note(family, KelLossReason::Refused, item, "refused by the writer: " + error);
}

void TransferRun::tell(const std::string& task, unsigned64 done, unsigned64 total, unsigned64 newBytes)
{
    _bytes += newBytes;
    if (_ask && !_ask({task, done, total, _bytes}))
        throw TransferStopped(KelTransferProblem::Cancelled, "cancelled at " + task);
}

bool overflows(const TransferRun& run, const double* values, unsigned64 count)
{
    constexpr double largest = std::numeric_limits<float>::max();
    return ConsumerAccess::precision(run.target) == KEL_PRECISION_SINGLE &&
           std::any_of(values, values + count,
                       [](double value) { return std::isfinite(value) && std::fabs(value) > largest; });
}

void stopShort(const std::string& what, unsigned64 found, unsigned64 expected)
{
    throw TransferStopped(KelTransferProblem::SourceBroken, what + ": the reader gave " + std::to_string(found) +
                                                                " values, expected " + std::to_string(expected));
}

void stopShort(const char* task, const KelZoneDescription& zone, unsigned64 firstId, unsigned64 lastId,
               unsigned64 found, unsigned64 expected)
{
    stopShort(std::string(task) + " of " + zoneLabel(zone) + ", ids " + std::to_string(firstId) + " to " +
                  std::to_string(lastId),
              found, expected);
}

} // namespace meridyn
