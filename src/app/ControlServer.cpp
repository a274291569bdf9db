#include "app/ControlServer.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "app/MetricsText.h"
#include "app/Orders.h"
#include "app/Trace.h"
#include "engine/FreeMoment.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr int kAskAgainMs = 20;
constexpr int kTellMs = 100;
constexpr int kRequestsAtOnce = 4, kServeOnMs = 20;
constexpr const char* kNoFreeMoment =
    "the air had no free moment for it within 10 s; it was not carried out";
}  // namespace

ControlServer::ControlServer(Station& station, ControlSources sources)
    : station_(station),
      sources_(std::move(sources)),
      picture_(station_, sources_),
      serving_(station.platform.loop.MakeTimer(kServeOnMs, [this] { ServeRequests(); })),
      asking_(station.platform.loop.MakeTimer(kAskAgainMs, [this] { ServeOrders(); })),
      telling_(station.platform.loop.MakeTimer(kTellMs, [this] { TellStatus(); })),
      self_(std::make_shared<ControlServer*>(this)) {}

ControlServer::~ControlServer() {
  *self_ = nullptr;
}

// The station's loop outlives the line's thread.
std::function<void()> ControlServer::Arrival() {
  return [&loop = station_.platform.loop, self = self_] {
    loop.Post([self] {
      if (*self) (*self)->Serve();
    });
  };
}

void ControlServer::OnEvent(const Event& event) {
  if (!line_ || !line_->IsListenedTo(ControlChannel::kEvents)) return;
  line_->Publish(ControlChannel::kEvents, TraceLine(event, TraceMoment(station_.Now())));
}

void ControlServer::Serve() {
  ServeRequests();
  ServeOrders();
}

// Few at a time, however many there are: the tick and whatever else is due comes between, and all
// clients together cost a part of the logic's time.
void ControlServer::ServeRequests() {
  shown_.clear();
  ControlRequest request;
  int served = 0;
  for (; served < kRequestsAtOnce && line_->Take(request); ++served) ServeRequest(request);
  const bool more = served == kRequestsAtOnce;
  if (serving_->Enabled() != more) serving_->SetEnabled(more);
}

void ControlServer::ServeRequest(const ControlRequest& request) {
  if (request.text.empty()) return Forget(request.client);
  ControlAsk ask = UnpackedAsk(request.text);
  try {
    ServeAsk(request.client, ask);
  } catch (const std::exception& error) {
    line_->Answer(request.client, ErrorAnswer(ask.id, error.what()));
  }
}

void ControlServer::ServeAsk(ControlClient client, ControlAsk& ask) {
  using What = ControlAsk::What;
  switch (ask.what) {
    case What::kStatus:
      if (shown_.empty()) shown_ = picture_.Now();
      return line_->Answer(client, DoneAnswer(ask.id, "status", picture_.WithMoment(shown_)));
    case What::kMetrics:
      return line_->Answer(
          client, DoneAnswer(ask.id, "metrics",
                             JsonText(MetricsText(station_, sources_.output(), sources_.space,
                                                  line_->Figures(), picture_.UptimeMs()))));
    case What::kWatchEvents:
      return Watch(client, ask.id, ControlChannel::kEvents);
    case What::kWatchStatus:
      return Watch(client, ask.id, ControlChannel::kStatus);
    case What::kOrder:
      orders_.push_back({client, std::move(ask.id), std::move(ask.words),
                         station_.platform.clock.MonotonicMs() + kOrderWaitsMs});
  }
}

// The answer comes ahead of the first line that is listened to.
void ControlServer::Watch(ControlClient client, const std::string& id, ControlChannel channel) {
  line_->Answer(client, DoneAnswer(id));
  line_->Listen(client, channel);
  if (channel != ControlChannel::kStatus) return;
  told_.clear();
  telling_->SetEnabled(true);
}

void ControlServer::Forget(ControlClient client) {
  std::erase_if(orders_, [client](const Waiting& order) { return order.client == client; });
}

// One an event of the loop, as an operator gives them: the tick and whatever else is due comes
// between two.
void ControlServer::ServeOrders() {
  RefuseLate();
  if (!orders_.empty() && !ordering_ && IsFreeMoment(station_)) {
    const Waiting order = std::move(orders_.front());
    orders_.pop_front();
    ordering_ = true;
    const std::string answer = AnswerOf(order);
    ordering_ = false;
    line_->Answer(order.client, answer);
  }
  if (asking_->Enabled() == orders_.empty()) asking_->SetEnabled(!orders_.empty());
}

void ControlServer::RefuseLate() {
  const int64_t nowMs = station_.platform.clock.MonotonicMs();
  while (!orders_.empty() && orders_.front().untilMs <= nowMs) {
    line_->Answer(orders_.front().client, ErrorAnswer(orders_.front().id, kNoFreeMoment));
    orders_.pop_front();
  }
}

std::string ControlServer::AnswerOf(const Waiting& order) {
  try {
    CarryOut(station_, OrderOfWords(Orders(), order.words));
    return DoneAnswer(order.id);
  } catch (const std::exception& error) {
    return ErrorAnswer(order.id, error.what());
  }
}

void ControlServer::TellStatus() {
  if (!line_->IsListenedTo(ControlChannel::kStatus)) return telling_->SetEnabled(false);
  std::string picture = picture_.Now();
  if (picture == told_) return;
  told_ = std::move(picture);
  line_->Publish(ControlChannel::kStatus, "{\"status\":" + picture_.WithMoment(told_) + "}");
}

}  // namespace zemo
