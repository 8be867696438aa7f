// Compiled with Clang only, and never run. With UNLOCKED defined, Clang must reject it.
#include "toolkit/threading/Mutex.h"

class Account {
public:
    Account() : m_lock(false), m_balance(0) {}

    int GetBalance()
    {
#ifndef UNLOCKED
        const Toolkit::MutexLocker locker(m_lock, Toolkit::MutexInternal::Infinite);
#endif
        return m_balance;
    }

private:
    Toolkit::Mutex m_lock;
    int m_balance TOOLKIT_GUARDED_BY(m_lock);
};

int main()
{
    return Account().GetBalance();
}
