#include "backend/backendhandler.h"

#include "apps/common/log/log.h"

BackendHandler::BackendHandler(EventPoll* poll, const Backend::HandlerTable& table)
    : table_(table), areas_(table.areas), connection_(poll) {
    connection_.setMessageNames(table_.messageNames);
    for (const std::uint16_t id : table_.subscriptions) connection_.subscribe({id});
    connection_.setHandler(this);
    Log::threshold =
        reinterpret_cast<const int*>(Backend::areaBases[table_.logThresholdArea] + table_.logThresholdOffset);
}

BackendHandler::~BackendHandler() {
    Log::threshold = nullptr;
    connection_.setHandler(nullptr);
}

bool BackendHandler::handleEvent(const Notify& message) {
    if (preHook) preHook(message);
    const bool known = Backend::applyMessage(table_, message.id);
    if (!known) TERN_LOG(Log::LogLight, "No variable for message %u", message.id);
    if (postHook) postHook(message);
    return known;
}

void BackendHandler::initialiseVariables() {
    for (const std::uint16_t id : table_.subscriptions) {
        if (table_.rowsOf(id).empty()) continue;
        handleEvent({id});
        installCallbacks(id);
    }
}

void BackendHandler::installCallbacks(std::uint32_t id) const {
    for (std::size_t row = table_.firstRow[id]; row < table_.firstRow[id + 1]; ++row) {
        void (*const callback)() = table_.callbacks[row];
        const Backend::HandlerRow::Target& target = table_.rows[row].target;
        if (callback == nullptr) continue;
        switch (table_.rows[row].kind) {
            case Backend::RowKind::Flag: target.flag->setCallback(callback); break;
            case Backend::RowKind::Int: target.number->setCallback(callback); break;
            case Backend::RowKind::Enum: target.choice->setCallback(callback); break;
            case Backend::RowKind::Float: target.fraction->setCallback(callback); break;
            case Backend::RowKind::String: target.text->setCallback(callback); break;
            case Backend::RowKind::Table:
            case Backend::RowKind::EnumAvailability:
            case Backend::RowKind::TableAvailability: break;
        }
    }
}
