/* qemu-plainfork: runs a command (the user-mode emulator) with pidfd waits
 * reported as unsupported, so the emulated Qt programs start their child
 * processes with a plain fork, which the emulator can do.
 *
 *   qemu-plainfork qemu-aarch64-static <program> [arguments]
 *
 * Qt 5.15's QProcess creates children with clone(CLONE_PIDFD | SIGCHLD) when
 * waitid(P_PIDFD) is known to the kernel. qemu-user 7.2 (Debian 12) refuses
 * that clone with EINVAL, and Qt 5.15 does not check the failure: QProcess
 * reports the program started although no child exists, and its output
 * channels end at once. Told that P_PIDFD is unsupported (EINVAL, as a kernel
 * before 5.4 answers), Qt takes its fork and SIGCHLD path instead. The filter
 * is inherited by everything the command starts, so programs started by an
 * emulated program (through binfmt_misc) are covered as well. Real AArch64
 * hardware needs none of this.
 */
#include <errno.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#if defined(__x86_64__)
#define HOST_AUDIT_ARCH AUDIT_ARCH_X86_64
#elif defined(__aarch64__)
#define HOST_AUDIT_ARCH AUDIT_ARCH_AARCH64
#else
#error "qemu-plainfork: unknown host architecture"
#endif

#define WAITID_P_PIDFD 3

int main(int argc, char **argv)
{
    if (argc < 2) {
        fprintf(stderr, "usage: qemu-plainfork <command> [arguments]\n");
        return 2;
    }
    struct sock_filter filter[] = {
        /* Only the host's own system call table is filtered. */
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, arch)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, HOST_AUDIT_ARCH, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        /* waitid(P_PIDFD, ...) fails with EINVAL; every other call passes. */
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_waitid, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, args[0])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, WAITID_P_PIDFD, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    struct sock_fprog program = {sizeof filter / sizeof filter[0], filter};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        perror("qemu-plainfork: seccomp");
        return 125;
    }
    execvp(argv[1], argv + 1);
    fprintf(stderr, "qemu-plainfork: %s: %s\n", argv[1], strerror(errno));
    return 127;
}
