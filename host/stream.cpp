#include "host/stream.h"

#include <array>
#include <utility>

#include "host/host_string.h"

namespace jostle {

StreamValue::StreamValue(StreamValue&& other) noexcept
    : chain_(std::exchange(other.chain_, nullptr)), record_(other.record_) {}

StreamValue& StreamValue::operator=(StreamValue&& other) noexcept {
    if (this != &other) {
        dispose();
        chain_ = std::exchange(other.chain_, nullptr);
        record_ = other.record_;
    }
    return *this;
}

StreamValue::~StreamValue() {
    dispose();
}

void StreamValue::dispose() {
    if (chain_ != nullptr)
        chain_->dispose<&AEGP_StreamSuite9::AEGP_DisposeStreamValue>(&record_);
    chain_ = nullptr;
}

Stream::Stream(Stream&& other) noexcept : chain_(other.chain_), handle_(std::exchange(other.handle_, nullptr)) {}

Stream& Stream::operator=(Stream&& other) noexcept {
    if (this != &other) {
        dispose();
        chain_ = other.chain_;
        handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
}

Stream::~Stream() {
    dispose();
}

void Stream::dispose() {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_StreamSuite9::AEGP_DisposeStream>(handle_);
    handle_ = nullptr;
}

StreamValue Stream::valueAt(A_Time time, Expressions expressions) const {
    AEGP_StreamValue2 value{};
    if (!exists() ||
        !chain_->call<&AEGP_StreamSuite9::AEGP_GetNewStreamValue>(chain_->pluginId(), handle_, AEGP_LTimeMode_CompTime,
                                                                  &time, static_cast<A_Boolean>(expressions), &value))
        return {};
    return {*chain_, value};
}

int Stream::keyCount() const {
    A_long count = 0;
    // A stream that cannot have keyframes answers with a negative number.
    if (!exists() || !chain_->call<&AEGP_KeyframeSuite4::AEGP_GetStreamNumKFs>(handle_, &count) || count < 0)
        return 0;
    return count;
}

A_Time Stream::keyTime(int index) const {
    A_Time time{0, 1};
    if (exists())
        chain_->call<&AEGP_KeyframeSuite4::AEGP_GetKeyframeTime>(handle_, index, AEGP_LTimeMode_CompTime, &time);
    return time;
}

bool Stream::isTimeVarying() const {
    A_Boolean varying = 0;
    return exists() && chain_->call<&AEGP_StreamSuite9::AEGP_IsStreamTimevarying>(handle_, &varying) && varying != 0;
}

bool Stream::isExpressionEnabled() const {
    A_Boolean enabled = 0;
    return exists() &&
           chain_->call<&AEGP_StreamSuite9::AEGP_GetExpressionState>(chain_->pluginId(), handle_, &enabled) &&
           enabled != 0;
}

void Stream::disableExpression() const {
    if (isExpressionEnabled())
        chain_->call<&AEGP_StreamSuite9::AEGP_SetExpressionState>(chain_->pluginId(), handle_, A_Boolean{0});
}

void Stream::deleteKeys() const {
    for (int index = keyCount() - 1; index >= 0 && !chain_->failed(); --index)
        chain_->call<&AEGP_KeyframeSuite4::AEGP_DeleteKeyframe>(handle_, index);
}

void Stream::setValue(const StreamValue& value) const {
    AEGP_StreamValue2 record = value.record();
    if (exists())
        chain_->call<&AEGP_StreamSuite9::AEGP_SetStreamValue>(chain_->pluginId(), handle_, &record);
}

bool Stream::hasSeparatedDimensions() const {
    A_Boolean leads = 0;
    A_Boolean separated = 0;
    return exists() && chain_->call<&AEGP_DynamicStreamSuite5::AEGP_IsSeparationLeader>(handle_, &leads) &&
           leads != 0 && chain_->call<&AEGP_DynamicStreamSuite5::AEGP_AreDimensionsSeparated>(handle_, &separated) &&
           separated != 0;
}

Stream Stream::follower(A_short dimension) const {
    AEGP_StreamRefH handle = nullptr;
    if (!exists() || !chain_->canDispose<&AEGP_StreamSuite9::AEGP_DisposeStream>() ||
        !chain_->call<&AEGP_DynamicStreamSuite5::AEGP_GetSeparationFollower>(handle_, dimension, &handle))
        return {};
    return {*chain_, handle};
}

Stream Stream::child(const char* matchName) const {
    AEGP_StreamRefH handle = nullptr;
    if (!exists() || !chain_->canDispose<&AEGP_StreamSuite9::AEGP_DisposeStream>() ||
        !chain_->ask<&AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefByMatchname>(chain_->pluginId(), handle_, matchName,
                                                                                 &handle))
        return {};
    return {*chain_, handle};
}

int Stream::childCount() const {
    A_long count = 0;
    if (exists())
        chain_->call<&AEGP_DynamicStreamSuite5::AEGP_GetNumStreamsInGroup>(handle_, &count);
    return count;
}

Stream Stream::childAt(int index) const {
    AEGP_StreamRefH handle = nullptr;
    if (!exists() || !chain_->canDispose<&AEGP_StreamSuite9::AEGP_DisposeStream>() ||
        !chain_->call<&AEGP_DynamicStreamSuite5::AEGP_GetNewStreamRefByIndex>(chain_->pluginId(), handle_,
                                                                              A_long{index}, &handle))
        return {};
    return {*chain_, handle};
}

MatchName Stream::matchName() const {
    std::array<A_char, AEGP_MAX_STREAM_MATCH_NAME_SIZE> name{};
    if (!exists() || !chain_->call<&AEGP_DynamicStreamSuite5::AEGP_GetMatchName>(handle_, name.data()))
        return {};
    return MatchName(name);
}

std::u16string Stream::shownName() const {
    if (!exists())
        return {};
    HostString name(*chain_);
    if (!chain_->canDispose<&AEGP_MemorySuite1::AEGP_FreeMemHandle>() ||
        !chain_->call<&AEGP_StreamSuite9::AEGP_GetStreamName>(chain_->pluginId(), handle_, A_Boolean{0}, name.out()))
        return {};
    return name.units();
}

bool Stream::isGroup() const {
    AEGP_StreamGroupingType type = AEGP_StreamGroupingType_NONE;
    return exists() && chain_->call<&AEGP_DynamicStreamSuite5::AEGP_GetStreamGroupingType>(handle_, &type) &&
           (type == AEGP_StreamGroupingType_NAMED_GROUP || type == AEGP_StreamGroupingType_INDEXED_GROUP);
}

void Stream::remove() const {
    if (exists())
        chain_->call<&AEGP_DynamicStreamSuite5::AEGP_DeleteStream>(handle_);
}

std::vector<NamedStream> childrenOf(const Stream& group) {
    std::vector<NamedStream> children;
    const int count = group.childCount();
    children.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int index = 0; index < count; ++index) {
        Stream child = group.childAt(index);
        if (!child.exists())
            continue;
        const MatchName name = child.matchName();
        children.push_back({std::move(child), name});
    }
    return children;
}

KeyframeBatch::KeyframeBatch(HostChain& chain, const Stream& stream)
    : chain_(&chain),
      add_(chain.find<&AEGP_KeyframeSuite4::AEGP_AddKeyframes>()),
      set_(chain.find<&AEGP_KeyframeSuite4::AEGP_SetAddKeyframe>()) {
    if (!chain.call<&AEGP_KeyframeSuite4::AEGP_StartAddKeyframes>(stream.handle(), &handle_))
        handle_ = nullptr;
}

void KeyframeBatch::giveUp(A_Err error) {
    chain_->fail(error);
    end(false);
}

void KeyframeBatch::end(bool commit) {
    if (handle_ != nullptr)
        chain_->dispose<&AEGP_KeyframeSuite4::AEGP_EndAddKeyframes>(static_cast<A_Boolean>(commit), handle_);
    handle_ = nullptr;
}

} // namespace jostle
