// SPDX-License-Identifier: GPL-2.0
/*
 * The shared-region driver of the emulated camera.
 *
 * /dev/sr offers one region to all its openers. Who finds none asks for one; from then on it lives
 * as long as the module. Each request and its answer goes to the kernel log, and module parameters
 * make any of them fail.
 */
#define pr_fmt(fmt) KBUILD_MODNAME ": " fmt

#include <linux/fs.h>
#include <linux/gfp.h>
#include <linux/io.h>
#include <linux/miscdevice.h>
#include <linux/mm.h>
#include <linux/module.h>
#include <linux/mutex.h>
#include <linux/pagemap.h>
#include <linux/sched.h>
#include <linux/uaccess.h>

struct sr_kmalloc_param {
	__u32 n_byte;	/* in: size of the region to create */
	__u32 offs;
	__u64 ker_addr;	/* out: address of the region, 0 while there is none */
};

#define SR_IOC_ALLOC_SHM	_IOWR('m', 0, struct sr_kmalloc_param)
#define SR_IOC_QUERY_SHM_INFO	_IOWR('m', 2, struct sr_kmalloc_param)
#define SR_IOC_OPEN_COMPLETE	_IO('m', 0)

#define SR_FAIL(step)							\
	static int fail_##step;						\
	module_param(fail_##step, int, 0644);				\
	MODULE_PARM_DESC(fail_##step, "Error number that " #step " fails with, 0 for none")

SR_FAIL(open);
SR_FAIL(query);
SR_FAIL(alloc);	/* EEXIST: creates the region all the same, as if another opener were faster */
SR_FAIL(mmap);
SR_FAIL(complete);

static bool unnamed;
module_param(unnamed, bool, 0644);
MODULE_PARM_DESC(unnamed, "Map page frames without a name: no futex can be waited for in them");

static DEFINE_MUTEX(sr_lock);
static void *sr_region;
static size_t sr_size;	/* whole pages */

static int sr_trace(const char *step, size_t size, int result)
{
	if (size)
		pr_info("%s: %s %zu = %d\n", current->comm, step, size, result);
	else
		pr_info("%s: %s = %d\n", current->comm, step, result);
	return result;
}

/* Pages of a device are never written back. */
static const struct address_space_operations sr_aops = {
	.dirty_folio = noop_dirty_folio,
};

static int sr_open(struct inode *inode, struct file *file)
{
	file->f_mapping->a_ops = &sr_aops;
	return sr_trace("open", 0, -fail_open);
}

static int sr_release(struct inode *inode, struct file *file)
{
	return sr_trace("release", 0, 0);
}

static int sr_query(struct sr_kmalloc_param __user *arg)
{
	struct sr_kmalloc_param param = {};

	mutex_lock(&sr_lock);
	param.ker_addr = (uintptr_t)sr_region;
	mutex_unlock(&sr_lock);

	if (!fail_query && copy_to_user(arg, &param, sizeof(param)))
		return -EFAULT;
	return -fail_query;
}

static int sr_create(size_t size)
{
	void *region;

	if (sr_region)
		return -EEXIST;
	if (!size)
		return -EINVAL;

	region = alloc_pages_exact(PAGE_ALIGN(size), GFP_KERNEL | __GFP_ZERO);
	if (!region)
		return -ENOMEM;
	sr_region = region;
	sr_size = PAGE_ALIGN(size);
	return 0;
}

static int sr_alloc(const struct sr_kmalloc_param *param)
{
	int err;

	if (fail_alloc && fail_alloc != EEXIST)
		return -fail_alloc;

	mutex_lock(&sr_lock);
	err = sr_create(param->n_byte);
	mutex_unlock(&sr_lock);
	return err ?: -fail_alloc;
}

static long sr_ioctl(struct file *file, unsigned int request, unsigned long arg)
{
	struct sr_kmalloc_param __user *user = (void __user *)arg;
	struct sr_kmalloc_param param;

	switch (request) {
	case SR_IOC_QUERY_SHM_INFO:
		return sr_trace("query", 0, sr_query(user));
	case SR_IOC_ALLOC_SHM:
		if (copy_from_user(&param, user, sizeof(param)))
			return sr_trace("alloc", 0, -EFAULT);
		return sr_trace("alloc", param.n_byte, sr_alloc(&param));
	case SR_IOC_OPEN_COMPLETE:
		return sr_trace("complete", 0, -fail_complete);
	default:
		return sr_trace("unknown request", request, -ENOTTY);
	}
}

/*
 * Maps the region page by page as pages of the device's address space. A futex that processes
 * share is known by its page's address space and index, so one in a page without cannot be waited
 * for: the wait fails with EFAULT.
 */
static int sr_map_named(struct vm_area_struct *vma)
{
	size_t at;
	int err = 0;

	for (at = 0; !err && at < sr_size; at += PAGE_SIZE) {
		struct page *page = virt_to_page(sr_region + at);

		page->mapping = vma->vm_file->f_mapping;
		page->index = at >> PAGE_SHIFT;
		err = vm_insert_page(vma, vma->vm_start + at, page);
	}
	return err;
}

static int sr_map(struct vm_area_struct *vma)
{
	if (fail_mmap)
		return -fail_mmap;
	if (!sr_region)
		return -ENXIO;
	if (vma->vm_pgoff || vma->vm_end - vma->vm_start != sr_size || !(vma->vm_flags & VM_SHARED))
		return -EINVAL;
	if (unnamed)
		return remap_pfn_range(vma, vma->vm_start, PHYS_PFN(virt_to_phys(sr_region)),
				       sr_size, vma->vm_page_prot);
	return sr_map_named(vma);
}

static int sr_mmap(struct file *file, struct vm_area_struct *vma)
{
	int err;

	mutex_lock(&sr_lock);
	err = sr_map(vma);
	mutex_unlock(&sr_lock);
	return sr_trace("mmap", vma->vm_end - vma->vm_start, err);
}

static const struct file_operations sr_fops = {
	.owner = THIS_MODULE,
	.open = sr_open,
	.release = sr_release,
	.unlocked_ioctl = sr_ioctl,
	.mmap = sr_mmap,
};

static struct miscdevice sr_device = {
	.minor = MISC_DYNAMIC_MINOR,
	.name = "sr",
	.fops = &sr_fops,
};

static int __init sr_init(void)
{
	return misc_register(&sr_device);
}

/* Every mapping holds the module, so none is left. */
static void __exit sr_exit(void)
{
	size_t at;

	misc_deregister(&sr_device);
	if (!sr_region)
		return;
	for (at = 0; at < sr_size; at += PAGE_SIZE)
		virt_to_page(sr_region + at)->mapping = NULL;
	free_pages_exact(sr_region, sr_size);
}

module_init(sr_init);
module_exit(sr_exit);

MODULE_DESCRIPTION("Shared region of an emulated camera");
MODULE_LICENSE("GPL");
