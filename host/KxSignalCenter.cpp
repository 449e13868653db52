#include "KxSignalCenter.h"

KxSignalCenter::KxSignalCenter()
{
    qRegisterMetaType<KxMediaInfo>("KxMediaInfo");
}

KxSignalCenter* KxSignalCenter::getInstance()
{
    // Lives as long as the process, like the objects that connect to it.
    static KxSignalCenter* theInstance = new KxSignalCenter();
    return theInstance;
}
