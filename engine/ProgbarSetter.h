// Progress of nested operations, and the way in which a cancel reaches them.
#pragma once

#include <cstdint>

class wxString;

/// Where progress goes, and where Cancel comes from. The progress dialog implements it, the command line
/// does with a terminal bar, tests do with a recorder.
class ProgressTarget {
public:
    virtual ~ProgressTarget() = default;

    /// Shows a position.
    /// @param value   0 to 100
    /// @param newmsg  a new message line; empty keeps the one on show. The engine always passes empty
    /// @param skip    receives whether Skip was pressed, or null. The engine always passes null
    /// @return false once the user asked to stop
    virtual bool Update(int value, const wxString& newmsg, bool* skip) = 0;
};

/// Maps an operation's own 0 to 100 onto a slice of the progress dialog. A value object, copied freely;
/// slices nest to any depth. Functions that take a pointer to one accept null and then report nothing.
class ProgbarSetter {
public:
    /// The top of a chain.
    /// @param pDialog   not owned; outlives the chain
    /// @param nCurrent  the position already on show
    /// @param nMin,nMax dialog positions of 0 % and of 100 %
    ProgbarSetter(ProgressTarget* pDialog, std::int32_t nCurrent, std::int32_t nMin, std::int32_t nMax);

    /// A sub-range; nLow and nHigh are percentages of the parent's range. Asserted: a parent.
    ProgbarSetter(const ProgbarSetter* pParent, std::int32_t nLow, std::int32_t nHigh);

    /// Reports 0 to 100 of this range. The dialog is called only when its whole-number position has grown;
    /// if it answers that the user asked to stop, the workspace's cancel flag is set.
    void SetPercent(std::int32_t nPercent);

    std::int32_t Min() const { return m_nMin; }
    std::int32_t Max() const { return m_nMax; }

private:
    std::int32_t m_nMin;
    std::int32_t m_nMax;
    std::int32_t m_nCurrent;
    ProgressTarget* m_pDialog;
};

/// The share of an operation that is done, as the writers and loops report it: y / h * 100, truncated.
std::int32_t RowPercent(std::int32_t nRow, std::int32_t nRows);

/// A sub-range of a progress that may be absent.
class SubProgress {
public:
    SubProgress(const ProgbarSetter* pParent, std::int32_t nLow, std::int32_t nHigh)
        : m_bPresent(pParent != nullptr),
          m_setter(pParent ? ProgbarSetter(pParent, nLow, nHigh) : ProgbarSetter(nullptr, 0, 0, 0))
    {
    }

    /// Null where the parent was null; valid as long as this object.
    ProgbarSetter* Get() { return m_bPresent ? &m_setter : nullptr; }

private:
    bool m_bPresent;
    ProgbarSetter m_setter;
};

/// Reports to a progress that may be null.
inline void Report(ProgbarSetter* pProgress, std::int32_t nPercent)
{
    if (pProgress)
        pProgress->SetPercent(nPercent);
}
