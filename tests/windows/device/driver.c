/* A device \\.\Ezusb-0 for Wine: a kernel driver that hands every device control to Forward().
   SPDX-License-Identifier: MIT */
#include <ddk/wdm.h>

int Forward(unsigned code, const unsigned char* input, unsigned inputSize, unsigned char* output,
            unsigned outputSize);

static UNICODE_STRING deviceName;
static UNICODE_STRING linkName;
static DEVICE_OBJECT* device;

static NTSTATUS Complete(IRP* request, NTSTATUS status, ULONG moved) {
  request->IoStatus.Status = status;
  request->IoStatus.Information = moved;
  IoCompleteRequest(request, IO_NO_INCREMENT);
  return status;
}

static NTSTATUS WINAPI OpenOrClose(DEVICE_OBJECT* self, IRP* request) {
  (void)self;
  return Complete(request, STATUS_SUCCESS, 0);
}

static NTSTATUS WINAPI Control(DEVICE_OBJECT* self, IRP* request) {
  (void)self;
  IO_STACK_LOCATION* place = IoGetCurrentIrpStackLocation(request);
  const ULONG code = place->Parameters.DeviceIoControl.IoControlCode;
  UCHAR* input = request->AssociatedIrp.SystemBuffer;
  UCHAR* output = input;
  switch (code & 3) { /* how the system hands the buffers over */
    case METHOD_IN_DIRECT:
    case METHOD_OUT_DIRECT:
      output = request->MdlAddress
                   ? MmGetSystemAddressForMdlSafe(request->MdlAddress, NormalPagePriority)
                   : NULL;
      break;
    case METHOD_NEITHER:
      input = place->Parameters.DeviceIoControl.Type3InputBuffer;
      output = request->UserBuffer;
      break;
    default:
      break;
  }
  if (!input || !output) return Complete(request, STATUS_UNSUCCESSFUL, 0);
  const int moved = Forward(code, input, place->Parameters.DeviceIoControl.InputBufferLength, output,
                            place->Parameters.DeviceIoControl.OutputBufferLength);
  if (moved < 0) return Complete(request, STATUS_DEVICE_NOT_CONNECTED, 0);
  return Complete(request, STATUS_SUCCESS, moved);
}

static void WINAPI Unload(DRIVER_OBJECT* driver) {
  (void)driver;
  IoDeleteSymbolicLink(&linkName);
  IoDeleteDevice(device);
}

NTSTATUS WINAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registry) {
  (void)registry;
  RtlInitUnicodeString(&deviceName, L"\\Device\\Ezusb-0");
  RtlInitUnicodeString(&linkName, L"\\DosDevices\\Ezusb-0");
  NTSTATUS status =
      IoCreateDevice(driver, 0, &deviceName, FILE_DEVICE_UNKNOWN, 0, FALSE, &device);
  if (status) return status;
  status = IoCreateSymbolicLink(&linkName, &deviceName);
  if (status) return status;
  driver->MajorFunction[IRP_MJ_CREATE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_CLOSE] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_CLEANUP] = OpenOrClose;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = Control;
  driver->DriverUnload = Unload;
  device->Flags &= ~DO_DEVICE_INITIALIZING;
  return STATUS_SUCCESS;
}
