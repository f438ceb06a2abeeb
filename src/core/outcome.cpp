// Outcome: the table of names, and how an outcome is derived.
#include "core/outcome.h"

#include <algorithm>
#include <iterator>

namespace tellaxis {

namespace {

constexpr OutcomeNames outcomes[] = {
    {.outcome = Outcome::delivered, .name = "delivered", .italian = "consegnato", .problem = false},
    {.outcome = Outcome::confirmed, .name = "confirmed", .italian = "confermato", .problem = false},
    {.outcome = Outcome::unanswered, .name = "unanswered", .italian = "senza risposta", .problem = true},
    {.outcome = Outcome::givenUp, .name = "given-up", .italian = "rinunciato", .problem = true},
    {.outcome = Outcome::done, .name = "done", .italian = "fatto", .problem = false},
    {.outcome = Outcome::failed, .name = "failed", .italian = "non riuscito", .problem = true},
    {.outcome = Outcome::discarded, .name = "discarded", .italian = "scartato", .problem = true},
    {.outcome = Outcome::unconfirmed, .name = "unconfirmed", .italian = "non confermato", .problem = true},
};
static_assert(std::size(outcomes) == outcomeCount);

Outcome outcomeFrom(FiscalOutcome outcome) {
  switch (outcome) {
    case FiscalOutcome::delivered: return Outcome::delivered;
    case FiscalOutcome::confirmed: return Outcome::confirmed;
    case FiscalOutcome::unanswered: return Outcome::unanswered;
    case FiscalOutcome::givenUp: return Outcome::givenUp;
    case FiscalOutcome::notHandedOver: break;
  }
  return Outcome::failed;
}

}  // namespace

const OutcomeNames& namesOf(Outcome outcome) { return *std::ranges::find(outcomes, outcome, &OutcomeNames::outcome); }

std::optional<Outcome> outcomeNamed(std::string_view name) {
  const auto* row = std::ranges::find(outcomes, name, &OutcomeNames::name);
  if (row == std::end(outcomes)) return std::nullopt;
  return row->outcome;
}

bool comesAgain(Device device) { return device == Device::display || device == Device::slipPrinter; }

Outcome outcomeOf(Device device, const Bridge& bridge, const Activity& activity) {
  if (device == Device::fiscalPrinter) return outcomeFrom(bridge.fiscalOutcome);
  const auto& job = activity.lastJob(device);
  return job && !job->failure.empty() ? Outcome::failed : Outcome::done;
}

}  // namespace tellaxis
