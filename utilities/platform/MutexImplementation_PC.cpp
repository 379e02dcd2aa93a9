#include "utilities/platform/MutexImplementation_PC.h"

#include "utilities/ComponentCreatorNormal.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/platform/LockDirectory.h"
#include "utilities/platform/SystemMutexTable.h"

namespace Utilities {

namespace {

ComponentCreatorNormal<MutexImplementation_PC> mutexCreator(
    "MutexImplementation", "$Revision: 1.5 $", "Multithreading");

}

MutexImplementation_PC::~MutexImplementation_PC()
{
    if (systemMutex) {
        systemMutex->Unlock();
    }
}

void MutexImplementation_PC::Create(const String& name)
{
    if (name.IsEmpty()) {
        systemMutex = std::make_shared<SystemMutex>(nullptr);
    } else {
        systemMutex = SystemMutexTable::Open(LockDirectory::LockFilePath(name.ToStdString()));
    }
}

bool MutexImplementation_PC::Lock(unsigned long timeoutMs)
{
    return Object().Lock(timeoutMs);
}

void MutexImplementation_PC::Unlock()
{
    Object().Unlock();
}

SystemMutex& MutexImplementation_PC::Object() const
{
    if (!systemMutex) {
        throw ExceptionNullpointer("Failed to access to nullpointer.");
    }
    return *systemMutex;
}

}
