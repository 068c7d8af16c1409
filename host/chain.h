#pragma once

#include "host/suite_handler.h"
#include "host/suites.h"

namespace jostle {

/// What the host hands the plug-in at its start, and every conversation with the host begins with.
struct HostContext {
    const SPBasicSuite* basic = nullptr; ///< not owned; lives as long as the host
    AEGP_PluginID pluginId = 0;
};

/// One conversation with the host: the suites it acquired and the first error that stopped it.
///
/// Each call is made only while no earlier one has failed. What was handed out is disposed of all the same, through
/// `dispose`. Suites are acquired when first used and given back at the end of the chain's life, so the wrappers
/// that own something of the host must not outlive the chain they were made with.
/// [user-interface thread]
class HostChain {
public:
    explicit HostChain(const HostContext& context) : suites_(context.basic), pluginId_(context.pluginId) {}
    HostChain(const HostChain&) = delete;
    HostChain& operator=(const HostChain&) = delete;

    [[nodiscard]] AEGP_PluginID pluginId() const { return pluginId_; }
    [[nodiscard]] A_Err code() const { return error_; }
    [[nodiscard]] bool failed() const { return error_ != A_Err_NONE; }

    /// Stops the chain with an error, unless an earlier one has.
    void fail(A_Err error) {
        if (error_ == A_Err_NONE)
            error_ = error;
    }

    /// Lets the chain go on with its next, independent piece of work.
    /// @return the error that had stopped it, or A_Err_NONE
    A_Err restart() {
        const A_Err error = error_;
        error_ = A_Err_NONE;
        return error;
    }

    /// Makes a call of the host, unless the chain has failed; its error stops the chain. A suite that cannot be
    /// acquired is the error A_Err_MISSING_SUITE.
    /// @tparam operation  pointer to a suite's member, as in `&AEGP_LayerSuite13::AEGP_GetLayerID`
    /// @return whether the call was made and succeeded
    template<auto operation, class... Arguments>
    bool call(Arguments... arguments) {
        if (failed())
            return false;
        fail(invoke<operation>(arguments...));
        return !failed();
    }

    /// An operation itself, for those called so often that `call` would cost as much as they do: to be called only
    /// while the chain has not failed, and its error handed to `fail`. Valid as long as the chain.
    /// @return null if the chain has failed, as it does here if the suite is missing
    template<auto operation>
    auto find() {
        const auto* suite = failed() ? nullptr : suites_.template get<TableOf<operation>>();
        const auto found = suite == nullptr ? nullptr : suite->*operation;
        if (found == nullptr)
            fail(A_Err_MISSING_SUITE);
        return found;
    }

    /// As `call`, for a question whose refusal is an answer too: an error of the host does not stop the chain. A
    /// missing suite does.
    template<auto operation, class... Arguments>
    bool ask(Arguments... arguments) {
        if (failed())
            return false;
        const A_Err error = invoke<operation>(arguments...);
        if (error == A_Err_MISSING_SUITE)
            fail(error);
        return error == A_Err_NONE;
    }

    /// Makes sure that what is about to be taken can be given back: a suite that is missing only then would leave it
    /// with nobody. To be called first, when the two operations are of different suites.
    /// @tparam operation  the one that gives back
    /// @return whether the chain goes on
    template<auto operation>
    bool canDispose() {
        if (!failed() && suites_.template get<TableOf<operation>>() == nullptr)
            fail(A_Err_MISSING_SUITE);
        return !failed();
    }

    /// Makes a call that gives something back to the host, also in a chain that has failed.
    template<auto operation, class... Arguments>
    void dispose(Arguments... arguments) {
        fail(invoke<operation>(arguments...));
    }

private:
    template<class Member>
    struct MemberOf;
    template<class Function, class Suite>
    struct MemberOf<Function Suite::*> {
        using Table = Suite;
    };
    template<auto operation>
    using TableOf = typename MemberOf<decltype(operation)>::Table;

    template<auto operation, class... Arguments>
    A_Err invoke(Arguments... arguments) {
        const auto* suite = suites_.template get<TableOf<operation>>();
        if (suite == nullptr || suite->*operation == nullptr)
            return A_Err_MISSING_SUITE;
        return (suite->*operation)(arguments...);
    }

    AEGP_SuiteHandler suites_;
    AEGP_PluginID pluginId_;
    A_Err error_ = A_Err_NONE;
};

} // namespace jostle
